#include "runtime/panel/csvtext.h"

#include "runtime/panel/csvpieces.h"

namespace {

const QChar Quote = QLatin1Char('"');

/** True if the character at @p position exists and is the whole delimiter. */
bool isDelimiterAt(const QString& line, int position, const QString& delimiter) {
    return position >= 0 && position < line.size() && delimiter.size() == 1 &&
           line.at(position) == delimiter.at(0);
}

bool endsLineOrQuotes(QChar character) {
    return character == QLatin1Char('\n') || character == Quote;
}

bool needsQuotes(const QString& field, const QString& delimiter) {
    const QChar* const begin = field.constData();
    return std::any_of(begin, begin + field.size(), endsLineOrQuotes) || field.contains(delimiter);
}

/** One pass: QString::replace() would move the rest of a long text again and
 *  again. */
void appendWithDoubledQuotes(QString& text, const QString& field) {
    TextSpan rest(field);
    for (;;) {
        const QChar* const hit = std::find(rest.begin, rest.end, Quote);
        TextSpan(rest.begin, hit).appendTo(text);
        if (hit == rest.end)
            return;
        text += QLatin1String("\"\"");
        rest.begin = hit + 1;
    }
}

void appendField(QString& text, const QString& field, const QString& delimiter,
                 bool quote_when_needed) {
    if (!quote_when_needed) {
        text += Quote + field + Quote;
    } else if (needsQuotes(field, delimiter)) {
        text += Quote;
        appendWithDoubledQuotes(text, field);
        text += Quote;
    } else {
        text += field;
    }
}

} // namespace

int csvColumnCount(const QString& line, const QString& delimiter) {
    CsvPieces pieces(delimiter);
    pieces.start(TextSpan(line));
    int count = 0;
    for (TextSpan piece; pieces.next(piece);)
        ++count;
    return count;
}

bool csvQuotingExplainsHeader(const QString& line, const QString& delimiter) {
    const int first_delimiter = line.indexOf(delimiter);
    if (first_delimiter < 0)
        return false;
    const int opening = line.indexOf(Quote);
    if (opening < 0)
        return true;
    if (opening >= first_delimiter)
        return false;
    const int closing = line.indexOf(Quote, opening + 1); // -1: never closed
    if (first_delimiter >= closing)
        return first_delimiter == closing + 1;
    if (opening != 0 && isDelimiterAt(line, closing + 1, delimiter))
        return true;
    // Never true of a line, whose first delimiter comes later; part of the rule.
    return isDelimiterAt(line, opening - 1, delimiter);
}

void appendCsvRow(QString& text, const QStringList& row, const QString& delimiter,
                  bool quote_when_needed) {
    for (int i = 0; i < row.size(); ++i) {
        appendField(text, row.at(i), delimiter, quote_when_needed);
        if (i + 1 < row.size())
            text += delimiter;
        else
            text += QLatin1Char('\n');
    }
}
