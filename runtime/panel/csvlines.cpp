#include "runtime/panel/csvlines.h"

#include <QTextStream>

namespace {

// Characters asked of the stream at a time: large enough that blocks cost
// nothing beside their text, small enough that freeing them one by one helps.
const int BlockCharacters = 256 * 1024;

const QChar* lineFeedIn(const TextSpan& text) {
    return std::find(text.begin, text.end, QChar(QLatin1Char('\n')));
}

TextSpan withoutCarriageReturn(TextSpan line) {
    if (!line.isEmpty() && *(line.end - 1) == QLatin1Char('\r'))
        --line.end;
    return line;
}

} // namespace

CsvLines::CsvLines(QTextStream& stream) : m_characters(0), m_count(0) {
    QString begun; // a line whose end has not been read yet
    for (;;) {
        const QString text = stream.read(BlockCharacters);
        if (text.isEmpty())
            break;
        m_characters += text.size();
        if (isTooLong()) {
            m_blocks.clear();
            m_count = 0;
            return;
        }
        const int whole = text.lastIndexOf(QLatin1Char('\n')) + 1;
        if (whole > 0) {
            append(begun + text.left(whole));
            begun = text.mid(whole);
        } else {
            begun += text;
        }
    }
    if (!begun.isEmpty()) {
        append(begun);
        ++m_count; // the last line has no line feed
    }
}

void CsvLines::append(const QString& whole_lines) {
    m_blocks.push_back(whole_lines);
    m_count += whole_lines.count(QLatin1Char('\n'));
}

QString CsvLines::first() const {
    const TextSpan block(m_blocks.front());
    return withoutCarriageReturn(TextSpan(block.begin, lineFeedIn(block))).toString();
}

bool CsvLines::next(TextSpan& line) {
    if (m_rest.isEmpty() && !openNextBlock())
        return false;
    const QChar* const line_feed = lineFeedIn(m_rest);
    line = withoutCarriageReturn(TextSpan(m_rest.begin, line_feed));
    m_rest.begin = line_feed == m_rest.end ? line_feed : line_feed + 1;
    return true;
}

bool CsvLines::openNextBlock() {
    if (m_rest.begin) { // the front block has been taken whole
        m_blocks.pop_front();
        m_rest = TextSpan();
    }
    if (m_blocks.empty())
        return false;
    m_rest = TextSpan(m_blocks.front());
    return true;
}
