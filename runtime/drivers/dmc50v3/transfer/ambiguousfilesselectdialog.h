#ifndef RUNTIME_DRIVERS_DMC50V3_TRANSFER_AMBIGUOUSFILESSELECTDIALOG_H
#define RUNTIME_DRIVERS_DMC50V3_TRANSFER_AMBIGUOUSFILESSELECTDIALOG_H

#include <QDialog>
#include <QString>
#include <QStringList>

class QListWidget;

/** Asks the operator which of several files goes to the controller. There is no
 *  way to cancel: a dialog that is closed without its button counts too. GUI
 *  thread. */
class ambiguousFilesSelectDialog : public QDialog {
    Q_OBJECT
public:
    explicit ambiguousFilesSelectDialog(QWidget* parent = nullptr);

    /** Appends @p files to the list and makes the first row current. */
    void addItems(const QStringList& files);

    /** The first selected row's text; empty when nothing is selected. */
    QString getFileName() const;

private:
    QListWidget* m_list; // child
};

#endif
