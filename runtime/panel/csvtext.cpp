#include "runtime/panel/csvtext.h"

#include "runtime/panel/csvpieces.h"

namespace {

/** True if the character at @p position exists and is the whole delimiter. */
bool isDelimiterAt(const QString& line, int position, const QString& delimiter) {
    return position >= 0 && position < line.size() && delimiter.size() == 1 &&
           line.at(position) == delimiter.at(0);
}

bool endsLineOrQuotes(QChar character) {
    return character == QLatin1Char('\n') || character == CsvQuote;
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
        const QChar* const hit = std::find(rest.begin, rest.end, CsvQuote);
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
        text += CsvQuote + field + CsvQuote;
    } else if (needsQuotes(field, delimiter)) {
        text += CsvQuote;
        appendWithDoubledQuotes(text, field);
        text += CsvQuote;
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
    const int opening = line.indexOf(CsvQuote);
    if (opening < 0)
        return true;
    if (opening >= first_delimiter)
        return false;
    const int closing = line.indexOf(CsvQuote, opening + 1); // -1: never closed
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
