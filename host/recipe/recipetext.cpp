#include "host/recipe/recipetext.h"

#include "runtime/panel/availablememory.h"
#include "runtime/panel/csvlines.h"
#include "runtime/panel/csvrowreader.h"
#include "runtime/panel/kcsvloader.h"

#include <QBuffer>
#include <QTextCodec>
#include <QTextStream>

#include <array>

namespace host {

namespace {

/** A byte-order mark, and what is said of a file that begins with it. */
struct Mark {
    QByteArray bytes;
    const char* encoding; // null: the right one
};

const std::array<Mark, 5> Marks = {{
    {QByteArray("\xFF\xFE\0\0", 4), "UTF-32"},
    {QByteArray("\0\0\xFE\xFF", 4), "UTF-32"},
    {QByteArray("\xFF\xFE"), nullptr},
    {QByteArray("\xFE\xFF"), "UTF-16 with the high byte first"},
    {QByteArray("\xEF\xBB\xBF"), "UTF-8"},
}};

const Mark* markOf(const QByteArray& content) {
    for (const Mark& mark : Marks) {
        if (content.startsWith(mark.bytes))
            return &mark;
    }
    return nullptr;
}

/** The content as the panel reads it: UTF-16LE unless a mark says otherwise, and
 *  without carriage returns. */
class ContentStream {
public:
    explicit ContentStream(const QByteArray& content) {
        m_buffer.setData(content);
        m_buffer.open(QIODevice::ReadOnly | QIODevice::Text);
        m_stream.setDevice(&m_buffer);
        m_stream.setCodec("UTF-16LE");
    }
    QTextStream& stream() { return m_stream; }

private:
    QBuffer m_buffer;
    QTextStream m_stream;
};

/** The panel's loader, asked for its opinion of a text. */
class OpinionLoader : public KCSVLoader {
public:
    explicit OpinionLoader(const QByteArray& content) : KCSVLoader(nullptr) {
        QStringList warnings;
        ContentStream text(content);
        loadFile(text.stream(), m_errors, warnings);
        if (m_status == FileNotOpened && m_errors.isEmpty())
            m_errors.append(QStringLiteral("it takes more memory than there is"));
    }
    const QStringList& errors() const { return m_errors; }
    bool hasDetectedDelimiter() const { return m_delimiter_detected; }
    /** Tab, or the only other one that it detects. */
    QString usedDelimiter() const {
        return m_delimiter_detected ? QStringLiteral(",") : delimiter();
    }

private:
    QStringList m_errors;
};

void add(RecipeText& text, RecipeSeverity severity, const QString& reason) {
    RecipeFinding finding;
    finding.severity = severity;
    finding.reason = reason;
    text.findings.append(finding);
}

void judgeEncoding(RecipeText& text, const Mark* mark) {
    if (!mark)
        add(text, RecipeSeverity::Note,
            QStringLiteral("no byte-order mark; the driver takes it for UTF-16LE all the same"));
    else if (mark->encoding)
        add(text, RecipeSeverity::Warning,
            QStringLiteral("encoded as %1, where the panel writes UTF-16LE and may read nothing "
                           "else")
                .arg(QLatin1String(mark->encoding)));
}

/** A file that was not written to its end, or copied from a stick pulled too early. */
void judgeEnd(RecipeText& text, const QByteArray& content, const QString& decoded,
              const Mark* mark) {
    const bool is_utf16 = !mark || mark->bytes.size() == 2;
    if (is_utf16 && content.size() % 2 != 0)
        add(text, RecipeSeverity::Warning,
            QStringLiteral("ends within a character: the file has been cut"));
    else if (!decoded.endsWith(QLatin1Char('\n')))
        add(text, RecipeSeverity::Warning,
            QStringLiteral("no line end behind the last line: the file may have been cut within "
                           "it, and the driver would not notice"));
}

void judgeLoad(RecipeText& text, const OpinionLoader& loader) {
    for (const QString& error : loader.errors())
        add(text, RecipeSeverity::Refused,
            QStringLiteral("the driver cannot load it: ") + error.simplified());
    if (loader.hasDetectedDelimiter())
        add(text, RecipeSeverity::Warning,
            QStringLiteral("separated by commas, where the panel writes tabs"));
}

QVector<RecipeLine> cutLines(const QByteArray& content, const QString& delimiter) {
    ContentStream text(content);
    CsvMemory memory(availableMemory());
    CsvLines lines(text.stream(), memory);
    CsvRowReader reader(lines, delimiter, memory);
    QVector<RecipeLine> cut;
    for (;;) {
        RecipeLine line;
        if (reader.read(QStringList(), line.fields) != CsvRowReader::Row)
            return cut;
        line.number = reader.lineIndex() + 1;
        cut.append(line);
    }
}

} // namespace

RecipeText readRecipeText(const QByteArray& content) {
    RecipeText text;
    const Mark* const mark = markOf(content);
    const QString decoded = ContentStream(content).stream().readAll();
    if (!mark && !content.isEmpty() && !decoded.contains(QLatin1Char('\n'))) {
        add(text, RecipeSeverity::Refused,
            QStringLiteral("no UTF-16LE text: save it as \"Unicode text\", not as UTF-8 or Big5"));
        return text;
    }
    judgeEncoding(text, mark);
    judgeEnd(text, content, decoded, mark);
    const OpinionLoader loader(content);
    judgeLoad(text, loader);
    if (loader.errors().isEmpty())
        text.lines = cutLines(content, loader.usedDelimiter());
    return text;
}

} // namespace host
