#include "runtime/panel/csvlines.h"

#include <QTextStream>

namespace {

// Characters asked of the stream at a time: large enough that blocks cost
// nothing beside their text, small enough that freeing them one by one helps.
const int BlockCharacters = 256 * 1024;

// Of a line that goes on over blocks: its room grows ahead to the double, and
// it is copied once.
const qint64 CopiesOfALine = 3;

const QChar* lineFeedIn(const TextSpan& text) {
    return std::find(text.begin, text.end, QChar(QLatin1Char('\n')));
}

TextSpan withoutCarriageReturn(TextSpan line) {
    if (!line.isEmpty() && *(line.end - 1) == QLatin1Char('\r'))
        --line.end;
    return line;
}

} // namespace

CsvLines::CsvLines(QTextStream& stream, CsvMemory& memory)
    : m_memory(memory), m_count(0), m_is_too_long(!read(stream)) {
    if (m_is_too_long) {
        m_blocks.clear();
        m_count = 0;
    }
}

/** False if the text is too long or does not fit into the memory. */
bool CsvLines::read(QTextStream& stream) {
    QString begun; // a line whose end has not been read yet
    qint64 characters = 0;
    for (;;) {
        const QString text = stream.read(BlockCharacters);
        if (text.isEmpty())
            break;
        characters += text.size();
        const qint64 longest = qint64(begun.size()) + text.size();
        if (characters > MaxCharacters ||
            !m_memory.hasRoomFor(CopiesOfALine * bytesOfText(longest)))
            return false;
        const int whole = text.lastIndexOf(QLatin1Char('\n')) + 1;
        if (whole == 0) {
            begun += text;
            continue;
        }
        append(begun, TextSpan(text.constData(), text.constData() + whole));
        begun = text.mid(whole);
    }
    if (!begun.isEmpty()) {
        append(begun, TextSpan());
        ++m_count; // the last line has no line feed
    }
    return true;
}

/** A block of @p begun and @p rest, for which read() has made sure of room. */
void CsvLines::append(const QString& begun, const TextSpan& rest) {
    const int characters = begun.size() + rest.size();
    m_memory.take(bytesOfText(characters));
    QString block = begun;
    block.reserve(characters); // exactly: text that is appended makes more room than it needs
    rest.appendTo(block);
    m_count += block.count(QLatin1Char('\n'));
    m_blocks.push_back(block);
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
        m_memory.giveBack(bytesOfText(m_blocks.front().size()));
        m_blocks.pop_front();
        m_rest = TextSpan();
    }
    if (m_blocks.empty())
        return false;
    m_rest = TextSpan(m_blocks.front());
    return true;
}
