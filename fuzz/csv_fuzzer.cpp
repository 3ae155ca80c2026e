// Files of any bytes, loaded with any settings: no crash, no error without its
// text, every row as wide as the header, and what was loaded can be written and
// read again.
#include "runtime/panel/availablememory.h"
#include "runtime/panel/csvrowreader.h"
#include "runtime/panel/csvtext.h"
#include "runtime/panel/kcsvloader.h"

#include <QBuffer>
#include <QTextCodec>
#include <QTextStream>

#include <cstdint>
#include <cstdlib>

namespace {

const char* const Codecs[] = {"UTF-16LE", "UTF-8", "Big5", "ISO-8859-1"};
const char* const Delimiters[] = {"\t", ",", ";", "||", "\"", "\";", "", "\n"};

void require(bool condition) {
    if (!condition)
        std::abort();
}

/** Without an application no object is in the main thread: nothing is shown. */
class FuzzedLoader : public KCSVLoader {
public:
    explicit FuzzedLoader(bool tolerate_column_mismatch) : KCSVLoader(nullptr) {
        m_tolerate_column_mismatch = tolerate_column_mismatch;
    }

    const QList<QStringList>& rows() const { return m_content; }
};

/** How the input says that it is to be read. */
struct Choice {
    const char* codec;
    const char* delimiter;
    bool as_text;
    bool tolerant;
};

Choice choiceOf(uint8_t first, uint8_t second) {
    return {Codecs[first % 4], Delimiters[first / 4 % 8], (second & 1) == 0, (second & 2) == 0};
}

void load(FuzzedLoader& loader, const Choice& choice, QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(choice.as_text ? QIODevice::ReadOnly | QIODevice::Text : QIODevice::ReadOnly);
    QTextStream stream(&buffer);
    stream.setCodec(choice.codec);
    loader.setDelimiter(QString::fromLatin1(choice.delimiter));
    QStringList errors;
    QStringList warnings;
    loader.loadFile(stream, errors, warnings);
    for (const QString& message : errors + warnings)
        require(!message.isEmpty() && !message.contains(QLatin1Char('%')));
    require(choice.tolerant ? errors.size() <= 1 : warnings.isEmpty());
    loader.fileContent();
}

/** True if a row written with tabs can be told from no row, and no line end of
 *  a field is taken for another. */
bool canBeKept(const QStringList& row) {
    return row != QStringList(QString()) && !row.join(QString()).contains(QLatin1Char('\r'));
}

void requireReadBack(const QList<QStringList>& rows) {
    const QString tab = QLatin1String("\t");
    QString text;
    QList<QStringList> kept;
    for (const QStringList& row : rows)
        if (canBeKept(row)) {
            appendCsvRow(text, row, tab, true);
            kept.append(row);
        }
    QTextStream stream(&text, QIODevice::ReadOnly);
    CsvMemory memory(UnlimitedMemory);
    CsvLines lines(stream, memory);
    CsvRowReader reader(lines, tab, memory);
    for (const QStringList& row : kept) {
        QStringList again;
        require(reader.read(row, again) == CsvRowReader::Row);
        require(again == row);
    }
    QStringList none;
    require(reader.read(none, none) == CsvRowReader::End);
}

} // namespace

/** The first two bytes choose how the rest is read. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2)
        return 0;
    const Choice choice = choiceOf(data[0], data[1]);
    FuzzedLoader loader(choice.tolerant);
    load(loader, choice, QByteArray(reinterpret_cast<const char*>(data + 2), int(size - 2)));
    requireReadBack(loader.rows());
    return 0;
}
