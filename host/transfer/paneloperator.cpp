#include "host/transfer/paneloperator.h"

#include "runtime/panel/messagecenter.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QMutexLocker>
#include <QThread>

namespace host {

namespace {

constexpr QSize PanelSize(360, 200);
constexpr int PanelColor = int(0xffd6dde4);
const char ChoiceDialog[] = "ambiguousFilesSelectDialog";

MessageCenter* makePanel() {
    MessageCenter* const panel =
        MessageCenter::initInstance(PanelSize, PanelSize, 0, QRect(), PanelColor);
    panel->setAttribute(Qt::WA_DontShowOnScreen);
    return panel;
}

/** "title\ntext" without the title. */
QString textOf(const QString& message) {
    return message.section(QLatin1Char('\n'), 1);
}

} // namespace

PanelOperator::PanelOperator() : m_panel(makePanel()) {
    // A dialog that closes is no reason for the program to end.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    qApp->installEventFilter(this);
}

PanelOperator::~PanelOperator() {
    qApp->removeEventFilter(this);
}

void PanelOperator::chooseFile(const QString& name) {
    const QMutexLocker lock(&m_mutex);
    m_chosen_file = name;
}

QStringList PanelOperator::takeNotices() {
    // Behind the notices that wait for the same thread.
    QMetaObject::invokeMethod(this, &PanelOperator::readNotices,
                              QThread::currentThread() == thread() ? Qt::DirectConnection
                                                                   : Qt::BlockingQueuedConnection);
    const QMutexLocker lock(&m_mutex);
    QStringList notices;
    notices.swap(m_notices);
    return notices;
}

/** A notice arrives as a call of the panel from another thread. A second one of
 *  the same sender takes the place of the first: so each is read at once. */
bool PanelOperator::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_panel.get() && event->type() == QEvent::MetaCall) {
        readNotices();
        QMetaObject::invokeMethod(this, &PanelOperator::readNotices, Qt::QueuedConnection);
    } else if (event->type() == QEvent::Show &&
               watched->objectName() == QLatin1String(ChoiceDialog)) {
        QMetaObject::invokeMethod(this, &PanelOperator::answerDialog, Qt::QueuedConnection);
    }
    return false;
}

void PanelOperator::readNotices() {
    for (QLabel* const label : m_panel->findChildren<QLabel*>(QStringLiteral("label_msg"))) {
        if (label->text().isEmpty())
            continue;
        const QMutexLocker lock(&m_mutex);
        m_notices.append(textOf(label->text()));
        label->clear();
    }
}

void PanelOperator::answerDialog() {
    auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (!dialog || dialog->objectName() != QLatin1String(ChoiceDialog))
        return;
    auto* const list = dialog->findChild<QListWidget*>();
    const QMutexLocker lock(&m_mutex);
    list->clearSelection();
    for (int row = 0; row < list->count(); ++row) {
        if (QFileInfo(list->item(row)->text()).fileName() == m_chosen_file)
            list->setCurrentRow(row);
    }
    dialog->accept();
}

} // namespace host
