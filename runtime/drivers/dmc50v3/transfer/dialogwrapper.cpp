#include "runtime/drivers/dmc50v3/transfer/dialogwrapper.h"

#include "runtime/base/connectchecked.h"
#include "runtime/drivers/dmc50v3/transfer/ambiguousfilesselectdialog.h"

dialogWrapper::dialogWrapper(QObject* parent) : QObject(parent) {}

dialogWrapper::~dialogWrapper() {}

void dialogWrapper::showDialog(const QStringList& files) {
    connectChecked(this, SIGNAL(showDialogSignal(QStringList)), this,
                   SLOT(showDialogSlot(QStringList)), Qt::BlockingQueuedConnection);
    emit showDialogSignal(files);
}

QString dialogWrapper::getSelectedFileName() const {
    return m_selected_file_name;
}

void dialogWrapper::showDialogSlot(QStringList files) {
    m_dialog.reset(new ambiguousFilesSelectDialog);
    m_dialog->addItems(files);
    m_dialog->exec();
    m_selected_file_name = m_dialog->getFileName();
}
