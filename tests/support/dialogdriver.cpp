#include "tests/support/dialogdriver.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>

#include <gtest/gtest.h>

namespace {

void click(QWidget* widget, const QPoint& position) {
    QMouseEvent press(QEvent::MouseButtonPress, position, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QMouseEvent release(QEvent::MouseButtonRelease, position, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(widget, &press);
    QApplication::sendEvent(widget, &release);
}

} // namespace

DialogDriver::DialogDriver(Way way, int row)
    : m_way(way), m_row(row), m_dialogs_seen(0), m_finished(false) {
    m_look.setInterval(1);
    EXPECT_TRUE(connect(&m_look, SIGNAL(timeout()), this, SLOT(look())));
    m_look.start();
}

void DialogDriver::exec() {
    while (!m_finished)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents); // the timer wakes it
}

void DialogDriver::finish() {
    m_finished = true;
}

void DialogDriver::look() {
    QDialog* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog && dialog->isVisible())
        answer(dialog);
}

void DialogDriver::answer(QDialog* dialog) {
    ++m_dialogs_seen;
    if (m_before_answer)
        m_before_answer();
    QListWidget* list = dialog->findChild<QListWidget*>();
    QDialogButtonBox* box = dialog->findChild<QDialogButtonBox*>();
    ASSERT_TRUE(list && box);
    m_offered.clear();
    for (int i = 0; i < list->count(); ++i)
        m_offered.append(list->item(i)->text());
    if (m_row >= 0)
        click(list->viewport(), list->visualItemRect(list->item(m_row)).center());
    if (m_way == CloseWindow)
        dialog->close();
    else
        click(box->button(QDialogButtonBox::Ok), QPoint(5, 5));
}
