#ifndef RUNTIME_PANEL_MESSAGECENTERITEMWIDGET_H
#define RUNTIME_PANEL_MESSAGECENTERITEMWIDGET_H

#include "runtime/base/panelservice.h"

#include <QWidget>

QT_BEGIN_NAMESPACE
class QLabel;
class QPushButton;
QT_END_NAMESPACE

/** One notice of the message panel: its text and an "X" button that asks for
 *  its removal. Thread: GUI. */
class PANEL_SERVICE MessageCenterItemWidget : public QWidget {
    Q_OBJECT
public:
    explicit MessageCenterItemWidget(QWidget* parent = nullptr);

    void setMessage(const QString& text);

    /** The height of the remove button, in pixels. */
    int getHeight() const;

signals:
    /** The user clicked "X". The widget itself removes nothing. */
    void removeClicked();

private slots:
    void makeBeep();

private:
    void buildForm();

    // Both are children of this widget.
    QLabel* label_msg;
    QPushButton* pushButton_remove;
};

#endif
