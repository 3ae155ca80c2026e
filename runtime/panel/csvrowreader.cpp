#include "runtime/panel/csvrowreader.h"

namespace {

// Of a quoted field: joined from its lines, with room that grows ahead to the
// double, without its doubled quotes, and kept.
const qint64 CopiesOfAField = 4;

bool startsWithQuote(const TextSpan& text) {
    return !text.isEmpty() && *text.begin == CsvQuote;
}

bool endsWithQuote(const TextSpan& text) {
    return !text.isEmpty() && *(text.end - 1) == CsvQuote;
}

bool hasOddQuotes(const TextSpan& text) {
    return std::count(text.begin, text.end, CsvQuote) % 2 != 0;
}

/** What stands between a field's outer quotes, doubled quotes made single. In
 *  one pass: QString::replace() moves the rest of the text again and again. */
QString unescaped(TextSpan inside) {
    QString text;
    text.reserve(inside.size());
    while (!inside.isEmpty()) {
        const QChar* const hit = std::find(inside.begin, inside.end, CsvQuote);
        const QChar* const kept_to = hit == inside.end ? hit : hit + 1;
        TextSpan(inside.begin, kept_to).appendTo(text);
        const bool doubled = kept_to != inside.end && *kept_to == CsvQuote;
        inside.begin = doubled ? kept_to + 1 : kept_to;
    }
    text.squeeze();
    return text;
}

/** The field of the next column in @p above, if @p text equals it. */
const QString* sameAbove(const QStringList& above, int column, const TextSpan& text) {
    if (column >= above.size() || above.at(column).size() != text.size())
        return nullptr;
    const QString& field = above.at(column);
    return std::equal(text.begin, text.end, field.constData()) ? &field : nullptr;
}

} // namespace

CsvRowReader::CsvRowReader(CsvLines& lines, const QString& delimiter, CsvMemory& memory)
    : m_lines(lines)
    , m_memory(memory)
    , m_pieces(delimiter)
    , m_odd_delimiter(delimiter.count(CsvQuote) % 2 != 0)
    , m_line_index(-1)
    , m_taken_bytes(0) {}

CsvRowReader::Outcome CsvRowReader::read(const QStringList& above, QStringList& row) {
    do {
        if (!takeLine())
            return End;
    } while (m_line.isEmpty());

    if (!take(bytesOfList(above.size()) + BytesOfListGrowth))
        return OutOfMemory;
    row.reserve(above.size());
    TextSpan piece;
    while (m_pieces.next(piece)) {
        if (startsWithQuote(piece)) {
            const Outcome outcome = appendQuoted(piece, above, row);
            if (outcome != Row)
                return outcome;
        } else if (!appendField(above, piece, row)) {
            return OutOfMemory;
        }
    }
    return Row;
}

bool CsvRowReader::take(qint64 bytes) {
    m_taken_bytes += bytes;
    return m_memory.take(bytes);
}

bool CsvRowReader::takeLine() {
    if (!m_lines.next(m_line))
        return false;
    ++m_line_index;
    m_pieces.start(m_line);
    return true;
}

/** False without room for the field. */
bool CsvRowReader::appendField(const QStringList& above, const TextSpan& text, QStringList& row) {
    const int column = row.size();
    const QString* const same = sameAbove(above, column, text);
    const qint64 bytes =
        (same ? 0 : bytesOfText(text.size())) + (column < above.size() ? 0 : BytesOfListGrowth);
    if (!take(bytes))
        return false;
    row.append(same ? *same : text.toString());
    return true;
}

/** Follows the field whose first piece is @p field to its end, over lines if
 *  need be, and appends it. Quotes are counted once per piece, never for the
 *  joined text, so that a field of any length takes linear time. */
CsvRowReader::Outcome CsvRowReader::appendQuoted(TextSpan field, const QStringList& above,
                                                 QStringList& row) {
    QString earlier; // the field's text on the lines before this one
    bool odd = hasOddQuotes(field);
    while (odd || !endsWithQuote(field)) {
        TextSpan piece;
        if (m_pieces.next(piece)) {
            odd = odd != m_odd_delimiter;
            field.end = piece.end;
        } else {
            if (!hasRoomForCopies(earlier.size() + field.size() + 1))
                return OutOfMemory;
            field.appendTo(earlier);
            earlier += QLatin1Char('\n');
            if (!takeLine())
                return UnclosedQuote;
            m_pieces.next(piece);
            field = piece;
        }
        odd = odd != hasOddQuotes(piece);
    }
    if (!hasRoomForCopies(earlier.size() + field.size()))
        return OutOfMemory;
    if (!earlier.isEmpty()) {
        field.appendTo(earlier);
        field = TextSpan(earlier);
    }
    const TextSpan inside(field.begin + 1, field.end - 1);
    const bool plain = std::find(inside.begin, inside.end, CsvQuote) == inside.end;
    const bool appended = plain ? appendField(above, inside, row)
                                : appendField(above, TextSpan(unescaped(inside)), row);
    return appended ? Row : OutOfMemory;
}

/** Whether a field of so many characters can be joined and unescaped. */
bool CsvRowReader::hasRoomForCopies(int characters) const {
    return m_memory.hasRoomFor(CopiesOfAField * bytesOfText(characters));
}
