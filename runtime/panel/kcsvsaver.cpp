#include "runtime/panel/kcsvsaver.h"

#include "runtime/panel/csvtext.h"

#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QScopedPointer>
#include <QTextCodec>
#include <QTextEncoder>
#include <QTextStream>

KCSVSaver::KCSVSaver(QWidget* parent) : KCSVInterface(parent), m_quote_when_needed(true) {}

void KCSVSaver::setGenerateByteOrderMark(bool generate) {
    m_generate_byte_order_mark = generate;
}

QStringList KCSVSaver::errorMessageList() const {
    return m_error_message_list;
}

bool KCSVSaver::saveFile(QList<QStringList> datas, QString fileName) {
    if (!isFormatConfirmed(m_error_message_list)) {
        m_error_message_list.append(tr("User canceled operation."));
        return false;
    }
    m_error_message_list.clear();
    if (fileName.isEmpty())
        fileName = askFileName();
    if (fileName.isEmpty())
        return false;

    rememberDirectoryOf(fileName);
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        const QString failure = tr("File cannot be opened.");
        if (isInMainThread())
            QMessageBox::warning(m_parent, failure, failure, QMessageBox::Ok);
        else
            m_error_message_list.append(failure);
        return false;
    }
    write(datas, file);
    return true;
}

/** The name that the user picks; empty if there is none. */
QString KCSVSaver::askFileName() {
    if (isInMainThread())
        return QFileDialog::getSaveFileName(m_parent, tr("Export File"), startDirectory(),
                                            m_file_filter);
    m_error_message_list.append(tr("The file name is empty."));
    return QString();
}

void KCSVSaver::write(const QList<QStringList>& rows, QFile& file) const {
    QTextCodec* const codec = m_codec ? m_codec : QTextCodec::codecForLocale();
    if (m_generate_byte_order_mark) {
        // The stream would leave the mark out of a file without rows.
        const QScopedPointer<QTextEncoder> encoder(codec->makeEncoder());
        file.write(encoder->fromUnicode(QString()));
    }
    QTextStream stream(&file);
    stream.setCodec(codec);
    const QString field_delimiter = delimiter();
    for (int i = 0; i < rows.size(); ++i) {
        QString line;
        appendCsvRow(line, rows.at(i), field_delimiter, m_quote_when_needed);
        stream << line;
    }
}
