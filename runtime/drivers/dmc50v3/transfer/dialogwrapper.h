#ifndef RUNTIME_DRIVERS_DMC50V3_TRANSFER_DIALOGWRAPPER_H
#define RUNTIME_DRIVERS_DMC50V3_TRANSFER_DIALOGWRAPPER_H

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

class ambiguousFilesSelectDialog;

/** Carries a question from a worker thread to the GUI thread, in which it must
 *  live (moveToThread) before showDialog() is called. */
class dialogWrapper : public QObject {
    Q_OBJECT
public:
    explicit dialogWrapper(QObject* parent = nullptr);
    ~dialogWrapper() override;

    /** Worker thread only; blocks until the operator has closed the dialog. Each
     *  call adds a connection, so the n-th call on one object asks n times: use a
     *  new object for every question. */
    void showDialog(const QStringList& files);

    /** The choice; empty before showDialog() has returned. */
    QString getSelectedFileName() const;

signals:
    void showDialogSignal(QStringList files);

public slots:
    /** GUI thread: asks, in a modal dialog. */
    void showDialogSlot(QStringList files);

private:
    std::unique_ptr<ambiguousFilesSelectDialog> m_dialog; // null until shown; GUI thread
    QString m_selected_file_name; // set in the GUI thread while the worker is blocked
};

#endif
