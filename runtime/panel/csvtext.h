#ifndef RUNTIME_PANEL_CSVTEXT_H
#define RUNTIME_PANEL_CSVTEXT_H

#include <QString>
#include <QStringList>

/** Number of fields that @p line splits into at @p delimiter, quotes ignored;
 *  at least 1. */
int csvColumnCount(const QString& line, const QString& delimiter);

/** True if the quoting of a header line accounts for its having few fields, so
 *  that its delimiter is believed although the fields are long. */
bool csvQuotingExplainsHeader(const QString& line, const QString& delimiter);

/** Appends one row to @p text as a line of a table. A row without fields leaves
 *  nothing behind, not even a line end. With @p quote_when_needed a field is
 *  quoted if it holds a line feed, the delimiter or a double quote, and inner
 *  quotes are doubled; without, every field is quoted and inner quotes stay as
 *  they are, which cannot be read back. */
void appendCsvRow(QString& text, const QStringList& row, const QString& delimiter,
                  bool quote_when_needed);

#endif
