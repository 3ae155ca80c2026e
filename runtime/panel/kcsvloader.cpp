#include "runtime/panel/kcsvloader.h"

#include "runtime/panel/availablememory.h"
#include "runtime/panel/csvrowreader.h"
#include "runtime/panel/csvtext.h"

#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QTextStream>

#include <new>

#include <malloc.h>

namespace {

const int MaxErrorsShown = 22;       // what fits on the panel's screen
const int PlausibleFieldLength = 5;  // longer header fields on average are suspect
const int DetectableOccurrences = 2; // of a delimiter in a header

const int MessageCharacters = 48; // of the longest usual warning

/** True unless the table of a file of so many bytes takes more memory than there
 *  is: its text alone takes as much in UTF-16, and while fields are copied out of
 *  the text, the heads of their copies take what becomes free of it. */
bool canHoldFileOf(qint64 bytes) {
    return CsvMemory(availableMemory()).hasRoomFor(bytes);
}

} // namespace

KCSVLoader::KCSVLoader(QWidget* parent)
    : KCSVInterface(parent)
    , m_status(NoFileName)
    , m_delimiter_detected(false)
    , m_tolerate_column_mismatch(true) {}

QStringList KCSVLoader::errorMessageList() const {
    return m_error_message_list;
}

QStringList KCSVLoader::warningMessageList() const {
    return m_warning_message_list;
}

bool KCSVLoader::openFile(QString fileName) {
    if (!isFormatConfirmed(m_error_message_list)) {
        m_error_message_list.append(tr("User canceled operation."));
        return false;
    }
    m_error_message_list.clear();
    m_warning_message_list.clear();
    if (fileName.isEmpty())
        fileName = askFileName();
    if (fileName.isEmpty())
        return false;

    // Another kind of file may block when it is opened, or never end.
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Text) ||
        !canHoldFileOf(file.size())) {
        m_status = FileNotOpened;
        return false;
    }
    rememberDirectoryOf(fileName);
    QTextStream stream(&file);
    stream.setCodec(m_codec);
    m_status = LoadedWithoutWarnings;
    loadFile(stream, m_error_message_list, m_warning_message_list);
    if (!m_error_message_list.isEmpty())
        showErrors();
    if (m_status == FileNotOpened) { // it takes too much memory
        m_warning_message_list.clear();
        return false;
    }

    if (!m_error_message_list.isEmpty())
        m_status = LoadedWithErrors;
    // Whatever was set before: errors and a detected delimiter included.
    if (m_warning_message_list.isEmpty())
        m_status = LoadedWithoutWarnings;
    return m_error_message_list.isEmpty();
}

/** The name that the user picks; empty, with the status set, if there is none. */
QString KCSVLoader::askFileName() {
    if (!isInMainThread()) {
        m_status = NoFileName;
        m_error_message_list.append(tr("The file name is empty."));
        return QString();
    }
    const QString name =
        QFileDialog::getOpenFileName(m_parent, tr("Import File"), startDirectory(), m_file_filter);
    if (name.isEmpty())
        m_status = FileNotOpened;
    return name;
}

void KCSVLoader::loadFile(QTextStream& stream, QStringList& errors, QStringList& warnings) {
    try {
        loadTable(stream, errors, warnings);
    } catch (const std::bad_alloc&) { // other programs took memory meanwhile
        refuse();
    }
}

void KCSVLoader::loadTable(QTextStream& stream, QStringList& errors, QStringList& warnings) {
    CsvMemory memory(availableMemory());
    CsvLines lines(stream, memory);
    if (lines.isTooLong()) {
        refuse();
        return;
    }
    if (lines.count() < 2) {
        errors.append(tr("No content found in the imported file."));
        return;
    }
    emit updateStatus(QLatin1String("total lines"), lines.count());
    clearContent(memory);

    QString used_delimiter = delimiter();
    const QString header = lines.first();
    int columns = csvColumnCount(header, used_delimiter);
    if (columns < header.size() / PlausibleFieldLength &&
        isLineFormatError(header, errors, warnings, used_delimiter))
        return;
    if (m_delimiter_detected)
        columns = csvColumnCount(header, used_delimiter);
    CsvRowReader reader(lines, used_delimiter, memory);
    loadRows(reader, memory, columns, errors, warnings);
}

void KCSVLoader::refuse() {
    m_content.clear();
    m_status = FileNotOpened;
}

/** Gives the memory of the last load's table back, so that it counts as
 *  available to this one. */
void KCSVLoader::clearContent(CsvMemory& memory) {
    if (m_content.isEmpty())
        return;
    m_content.clear();
    malloc_trim(0); // or the heap would keep it
    memory.restart(availableMemory());
}

void KCSVLoader::loadRows(CsvRowReader& reader, CsvMemory& memory, int columns, QStringList& errors,
                          QStringList& warnings) {
    const QString current_line = QLatin1String("current line");
    qint64 padding_bytes = 0;
    QStringList above;
    for (;;) {
        QStringList row;
        const CsvRowReader::Outcome outcome = reader.read(above, row);
        const int line = reader.lineIndex();
        if (outcome == CsvRowReader::UnclosedQuote)
            errors.append(tr("Format error at line %1").arg(line + 2)); // the missing line
        if (outcome == CsvRowReader::End || outcome == CsvRowReader::UnclosedQuote)
            return;
        if (outcome == CsvRowReader::OutOfMemory || !takeFitting(row, above, columns, memory)) {
            refuse();
            if (padding_bytes > reader.takenBytes() / 2)
                errors.append(tr("Not enough memory to fill up the rows short of header."));
            return;
        }
        if (m_tolerate_column_mismatch)
            padding_bytes += qint64(sizeof(void*)) * qMax(0, columns - row.size());
        fitToHeader(row, line, columns, errors, warnings);
        m_content.append(row);
        above = row;
        emit updateStatus(current_line, line);
    }
}

/** Takes the memory of what fitToHeader() adds to @p row, which has room for as
 *  many fields as the row above; false without so much. */
bool KCSVLoader::takeFitting(const QStringList& row, const QStringList& above, int columns,
                             CsvMemory& memory) const {
    if (row.size() == columns)
        return true;
    qint64 bytes = bytesOfText(MessageCharacters) + BytesOfListGrowth;
    if (m_tolerate_column_mismatch && row.size() < columns && above.size() < columns)
        bytes += bytesOfList(columns);
    return memory.take(bytes);
}

/** @p line is the 0-based index of the row's last line; the first line is the
 *  header itself and always fits. */
void KCSVLoader::fitToHeader(QStringList& row, int line, int columns, QStringList& errors,
                             QStringList& warnings) {
    const int surplus = row.size() - columns;
    if (line == 0 || surplus == 0)
        return;
    if (!m_tolerate_column_mismatch) {
        m_delimiter_detected = false;
        errors.append(tr("Line %1 format error.").arg(line + 1));
        return;
    }
    m_status = ColumnsTolerated;
    if (surplus > 0) {
        warnings.append(tr("Line %1 is %2 columns more of header.").arg(line + 1).arg(surplus));
        return;
    }
    warnings.append(tr("Line %1 is %2 columns short of header.").arg(line + 1).arg(-surplus));
    row.reserve(columns);
    while (row.size() < columns)
        row.append(QString());
}

bool KCSVLoader::autoDetectDelimiter(QString& delimiter, QString line) {
    const char candidates[] = {'\t', ','};
    for (char character : candidates) {
        const QString candidate = QChar(QLatin1Char(character));
        if (candidate != this->delimiter() && line.count(candidate) >= DetectableOccurrences) {
            delimiter = candidate;
            return true;
        }
    }
    return false;
}

bool KCSVLoader::isLineFormatError(QString line, QStringList& errors, QStringList& warnings,
                                   QString& delimiter) {
    Q_UNUSED(warnings);
    if (csvQuotingExplainsHeader(line, delimiter))
        return false;
    m_delimiter_detected = autoDetectDelimiter(delimiter, line);
    if (m_delimiter_detected) {
        m_status = DelimiterDetected;
        return false;
    }
    errors.append(tr("File format error.") + QLatin1Char('\n') + tr("Cannot detect delimiter."));
    return true;
}

void KCSVLoader::showErrors() {
    if (!isInMainThread())
        return; // they are in the error list
    QStringList lines;
    const int shown = qMin(m_error_message_list.size(), MaxErrorsShown);
    for (int i = 0; i < shown; ++i)
        lines.append(QString::number(i + 1) + QLatin1String(". ") + m_error_message_list.at(i));
    QString text = lines.join(QLatin1String("\n"));
    if (shown == MaxErrorsShown)
        text += QLatin1String("....");
    QMessageBox::warning(m_parent, tr("File Format Error."), text, QMessageBox::Ok);
}

QList<QStringList> KCSVLoader::fileContent() {
    switch (m_status) {
    case NoFileName:
        report(tr("File cannot be loaded."), tr("Please select a file."));
        return QList<QStringList>();
    case FileNotOpened:
        report(tr("File cannot be opened."), tr("Please select the right file."));
        return QList<QStringList>();
    case LoadedWithErrors:
        report(tr("File cannot be loaded."), tr("Please check file format."));
        return QList<QStringList>();
    case LoadedWithoutWarnings:
        return m_content;
    case DelimiterDetected:
    case ColumnsTolerated:
        report(tr("Warning: Incorrect File Format"), modificationWarning());
        return m_content;
    default:
        return QList<QStringList>();
    }
}

/** The first two warnings, after what was done about a wrong delimiter. */
QString KCSVLoader::modificationWarning() const {
    QString text;
    if (m_delimiter_detected)
        text = tr("The file format has been modified. We strongly recommend you to export the "
                  "file again after final edits.") +
               QLatin1Char('\n');
    text += m_warning_message_list.value(0);
    if (m_warning_message_list.size() > 1)
        text += QLatin1Char('\n') + m_warning_message_list.at(1);
    if (m_warning_message_list.size() > 2)
        text += QLatin1String("\n...");
    return text;
}

void KCSVLoader::report(const QString& title, const QString& text) {
    if (isInMainThread())
        QMessageBox::information(m_parent, title, text, QMessageBox::Ok);
    else
        m_error_message_list << title << text;
}
