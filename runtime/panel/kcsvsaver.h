#ifndef RUNTIME_PANEL_KCSVSAVER_H
#define RUNTIME_PANEL_KCSVSAVER_H

#include "runtime/panel/kcsvinterface.h"

#include <QList>

class QFile;

/** Saves a table to a delimited text file. */
class PANEL_SERVICE KCSVSaver : public KCSVInterface {
    Q_OBJECT

public:
    explicit KCSVSaver(QWidget* parent);

    /** Whether files begin with a byte-order mark, where the codec has one. */
    void setGenerateByteOrderMark(bool generate);

    // The order of the invokable methods is part of the contract.
    Q_INVOKABLE QStringList errorMessageList() const;

    /** Writes @p datas to @p fileName or, if it is empty, to the file that the
     *  user picks, replacing what it held. False if no file could be opened; a
     *  file that opened counts as saved, also on a full disk. */
    Q_INVOKABLE bool saveFile(QList<QStringList> datas, QString fileName);

protected:
    bool m_quote_when_needed; // or quote every field
    QStringList m_error_message_list;

private:
    QString askFileName();
    void write(const QList<QStringList>& rows, QFile& file) const;
};

#endif
