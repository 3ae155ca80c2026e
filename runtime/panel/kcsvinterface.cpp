#include "runtime/panel/kcsvinterface.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QMessageBox>
#include <QSettings>
#include <QTextCodec>
#include <QThread>

namespace {

const char DefaultDirKey[] = "default_dir";

} // namespace

KCSVInterface::KCSVInterface(QWidget* parent)
    : m_parent(parent)
    , m_codec(nullptr)
    , m_generate_byte_order_mark(true)
    , m_delimiter(QLatin1String("\t"))
    , m_file_format(TxtFormat)
    , m_file_filter(tr("Text File (*.txt)"))
    , m_ask_format_each_time(false) {
    init();
}

void KCSVInterface::init() {
    m_codec = QTextCodec::codecForName("UTF-16LE");
}

QTextCodec* KCSVInterface::textCodec() const {
    return m_codec;
}

void KCSVInterface::setCodec(QTextCodec* codec) {
    m_codec = codec;
}

QString KCSVInterface::delimiter() const {
    return m_delimiter;
}

void KCSVInterface::setDelimiter(const QString& delimiter) {
    m_delimiter = delimiter;
}

bool KCSVInterface::askFormatEachTime() const {
    return m_ask_format_each_time;
}

void KCSVInterface::setAskFormatEachTime(bool ask) {
    m_ask_format_each_time = ask;
}

void KCSVInterface::setFileFormat(KCSVInterface::FileFormat format) {
    m_file_format = format;
    if (format == TxtFormat) {
        m_delimiter = QLatin1String("\t");
        m_file_filter = tr("Text File (*.txt)");
    } else if (format == CsvFormat) {
        m_delimiter = QLatin1String(",");
        m_file_filter = tr("CSV File (*.csv)");
    }
}

bool KCSVInterface::askEachTimeCheck() {
    if (!m_ask_format_each_time)
        return true;
    if (!isInMainThread())
        return false;
    QMessageBox box;
    box.setWindowTitle(tr("Import/Export File"));
    box.setText(formatQuestion());
    box.setInformativeText(tr("Do you want to procced?"));
    box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    box.setDefaultButton(QMessageBox::Cancel);
    return box.exec() != QMessageBox::Cancel;
}

QString KCSVInterface::formatQuestion() const {
    const QString format = m_file_format == TxtFormat   ? tr("TXT")
                           : m_file_format == CsvFormat ? tr("CSV")
                                                        : QString();
    return tr("The import/export file will process as %1 format.").arg(format);
}

bool KCSVInterface::isInMainThread() const {
    const QCoreApplication* const application = QCoreApplication::instance();
    return application && thread() == application->thread();
}

bool KCSVInterface::isFormatConfirmed(QStringList& errors) {
    const bool confirmed = askEachTimeCheck();
    if (!confirmed && !isInMainThread())
        errors << tr("Import/Export File") << formatQuestion() << tr("Do you want to procced?");
    return confirmed;
}

QString KCSVInterface::startDirectory() const {
    const QString last = QSettings().value(QLatin1String(DefaultDirKey)).toString();
    return last.isEmpty() ? QCoreApplication::applicationDirPath() : last;
}

void KCSVInterface::rememberDirectoryOf(const QString& file_name) {
    const QString directory = QFileInfo(file_name).absolutePath();
    QSettings settings;
    // Usually it is the same stick: spare the flash that holds the settings.
    if (settings.value(QLatin1String(DefaultDirKey)) != directory)
        settings.setValue(QLatin1String(DefaultDirKey), directory);
}
