#include "runtime/panel/csvrowreader.h"

namespace {

const QChar Quote = QLatin1Char('"');

bool startsWithQuote(const TextSpan& text) {
    return !text.isEmpty() && *text.begin == Quote;
}

bool endsWithQuote(const TextSpan& text) {
    return !text.isEmpty() && *(text.end - 1) == Quote;
}

bool hasOddQuotes(const TextSpan& text) {
    return std::count(text.begin, text.end, Quote) % 2 != 0;
}

/** What stands between a field's outer quotes, doubled quotes made single. In
 *  one pass: QString::replace() moves the rest of the text again and again. */
QString unescaped(TextSpan inside) {
    QString text;
    text.reserve(inside.size());
    while (!inside.isEmpty()) {
        const QChar* const hit = std::find(inside.begin, inside.end, Quote);
        const QChar* const kept_to = hit == inside.end ? hit : hit + 1;
        TextSpan(inside.begin, kept_to).appendTo(text);
        const bool doubled = kept_to != inside.end && *kept_to == Quote;
        inside.begin = doubled ? kept_to + 1 : kept_to;
    }
    text.squeeze();
    return text;
}

QString unquoted(const TextSpan& field) {
    const TextSpan inside(field.begin + 1, field.end - 1);
    const bool plain = std::find(inside.begin, inside.end, Quote) == inside.end;
    return plain ? inside.toString() : unescaped(inside);
}

/** The field of the next column in @p above, if @p text equals it. */
const QString* sameAbove(const QStringList& above, int column, const TextSpan& text) {
    if (column >= above.size() || above.at(column).size() != text.size())
        return nullptr;
    const QString& field = above.at(column);
    return std::equal(text.begin, text.end, field.constData()) ? &field : nullptr;
}

void appendField(const QStringList& above, const TextSpan& text, QStringList& row) {
    const QString* const same = sameAbove(above, row.size(), text);
    row.append(same ? *same : text.toString());
}

} // namespace

CsvRowReader::CsvRowReader(CsvLines& lines, const QString& delimiter)
    : m_lines(lines)
    , m_pieces(delimiter)
    , m_odd_delimiter(delimiter.count(Quote) % 2 != 0)
    , m_line_index(-1) {}

CsvRowReader::Outcome CsvRowReader::read(const QStringList& above, QStringList& row) {
    do {
        if (!takeLine())
            return End;
    } while (m_line.isEmpty());

    row.reserve(above.size());
    TextSpan piece;
    while (m_pieces.next(piece)) {
        if (!startsWithQuote(piece)) {
            appendField(above, piece, row);
            continue;
        }
        QString text;
        if (!readQuoted(piece, text))
            return UnclosedQuote;
        appendField(above, TextSpan(text), row);
    }
    return Row;
}

bool CsvRowReader::takeLine() {
    if (!m_lines.next(m_line))
        return false;
    ++m_line_index;
    m_pieces.start(m_line);
    return true;
}

/** Follows the field whose first piece is @p field to its end; false if the
 *  lines end first. Quotes are counted once per piece, never for the joined
 *  text, so that a field of any length takes linear time. */
bool CsvRowReader::readQuoted(TextSpan field, QString& text) {
    QString earlier; // the field's text on the lines before this one
    bool odd = hasOddQuotes(field);
    while (odd || !endsWithQuote(field)) {
        TextSpan piece;
        if (m_pieces.next(piece)) {
            odd = odd != m_odd_delimiter;
            field.end = piece.end;
        } else {
            field.appendTo(earlier);
            earlier += QLatin1Char('\n');
            if (!takeLine())
                return false;
            m_pieces.next(piece);
            field = piece;
        }
        odd = odd != hasOddQuotes(piece);
    }
    if (!earlier.isEmpty()) {
        field.appendTo(earlier);
        field = TextSpan(earlier);
    }
    text = unquoted(field);
    return true;
}
