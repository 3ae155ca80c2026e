#ifndef RUNTIME_PANEL_MESSAGECENTERLISTWIDGET_H
#define RUNTIME_PANEL_MESSAGECENTERLISTWIDGET_H

#include "runtime/base/panelservice.h"

#include <QListWidget>

QT_BEGIN_NAMESPACE
class QLabel;
class QPushButton;
QT_END_NAMESPACE

/** The message panel's list. A finger cannot grip a scroll bar, so it pages
 *  with two arrow buttons and tells its place as "first visible row/rows".
 *  Thread: GUI. */
class PANEL_SERVICE MessageCenterListWidget : public QListWidget {
    Q_OBJECT
public:
    explicit MessageCenterListWidget(QWidget* parent = nullptr);

signals:
    /** An arrow button was used. */
    void scrollClicked();

public slots:
    /** Shows the arrows that lead somewhere and the place, or none of them
     *  when all entries fit. */
    void determineScrollVisible();

private slots:
    void previousClicked();
    void nextClicked();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    bool entriesOverflow() const;
    int firstVisibleRow() const;
    void showScroll();
    void hideScroll();
    void setScrollVisible(bool visible);
    void turnWheel(int delta);

    // Children of this list, above its viewport.
    QPushButton* upButton;
    QPushButton* downButton;
    QLabel* pageLabel;
};

#endif
