#ifndef RUNTIME_PANEL_MESSAGECENTER_H
#define RUNTIME_PANEL_MESSAGECENTER_H

#include "runtime/base/panelservice.h"
#include "runtime/panel/messagecentergeometry.h"

#include <QColor>
#include <QHash>
#include <QWidget>

QT_BEGIN_NAMESPACE
class QHBoxLayout;
class QListWidgetItem;
class QTimer;
QT_END_NAMESPACE

class MessageCenterListWidget;

/** A small panel that pops up beside a docking rectangle and lists short
 *  notices, the newest first, one entry per sending object.
 *
 *  Thread: GUI. Objects of any thread reach it by connecting a signal of their
 *  own to showMessageAsync() or removeMessageAsync(), and by nothing else: the
 *  entry belongs to QObject::sender(). A sender is known by its address alone
 *  and never looked into, as it may be gone by the time its notice arrives; a
 *  new sender at the address of a deleted one takes over that one's entry. */
class PANEL_SERVICE MessageCenter : public QWidget {
    Q_OBJECT
public:
    /** The process's panel, made on the first call; later arguments are
     *  ignored. The host owns it: deleting it makes room for another. */
    static MessageCenter* initInstance(QSize maxSize, QSize size, int edge, QRect area, int color);

    /** Null before initInstance(). The application's property "MessageCenter"
     *  holds the same address as a void*. */
    static MessageCenter* getInstance();

    /** Of @p max_size only the height counts: it limits the panel's. @p dock_area
     *  is the docking rectangle on the screen in pixels, @p dock_edge the side to
     *  pop from: 0 above it, 1 below, 2 right, 3 left. @p color is the background
     *  as 0xAARRGGBB; the text gets its inverse. */
    MessageCenter(QSize max_size, QSize size, int dock_edge, QRect dock_area, int color,
                  QWidget* parent = nullptr);
    ~MessageCenter() override;

    bool rejectedMessage() const { return rejectMessage; }

    void instantShow();
    void _showWrapper();
    void animatedShow();

    /** Fits the height to the number of entries; an empty panel hides. */
    void adjustSize();

public slots:
    void showMessageAsync(QString title, QString text, bool showInstant);
    void _showMessage(QObject* send, QString title, QString text, bool showInstant);
    void removeMessageAsync();
    void toggleShowHide();

    /** While true, new notices are dropped; entries can still be removed. */
    void setRejectMessage(bool reject);

private slots:
    void _hideWrapper();
    void animatedHide();
    void instantHide();
    void timerOut();
    void itemWidgetRemoveClicked();
    void scrollClicked();
    void testMessage();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    struct Ui {
        QHBoxLayout* horizontalLayout; // owned by the panel
        MessageCenterListWidget* list; // a child of the panel
    };

    typedef QHash<QObject*, QListWidgetItem*> SenderItems;

    void buildForm();
    void setUpTimers();
    void setColors(QRgb background);
    void deliverPendingResize();
    MessageCenterDock dock() const { return MessageCenterDock(area, edge); }
    void restartAutoHide();

    QListWidgetItem* addEntry(const QString& message);
    void dropOldestEntry();
    int rowOf(const QObject* widget) const;
    SenderItems::iterator findSender(const QListWidgetItem* item);

    static MessageCenter* m_instance; // owned by the host
    static int ColorIndex;            // of the next entry's colour

    Ui ui;
    QRect area;
    int edge;
    QPoint shownPos;
    QPoint hiddenPos;
    QTimer* animTimer; // a child of the panel
    bool rejectMessage;
    QSize maxSize;
    QTimer* autoHideTimer;   // a child of the panel
    MessageCenterSlide anim; // stepped by animTimer
    SenderItems senderItems; // null items: their entries were dropped for newer ones
};

#endif
