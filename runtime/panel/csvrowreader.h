#ifndef RUNTIME_PANEL_CSVROWREADER_H
#define RUNTIME_PANEL_CSVROWREADER_H

#include "runtime/panel/csvpieces.h"

#include <QStringList>

/** Builds rows from lines by the quoting rules of the panel's tables.
 *
 *  A field that begins with a double quote runs, over delimiters and line ends,
 *  to the first piece that ends with a double quote and makes their number
 *  even; inside, a doubled quote stands for one. Any other field is taken as it
 *  stands, quotes included. Empty lines between rows are no rows. */
class CsvRowReader {
public:
    enum Outcome {
        Row,           // a row was read
        End,           // no line is left
        UnclosedQuote, // the lines ended inside a quoted field; its row is lost
        OutOfMemory    // there is no room for the row; it is lost
    };

    /** @p lines and @p memory, of which the rows are taken, must outlive this
     *  object. */
    CsvRowReader(CsvLines& lines, const QString& delimiter, CsvMemory& memory);

    /** Appends the next row's fields to @p row. A field that equals the one of
     *  its column in @p above shares that one's text: tables repeat themselves
     *  downwards, and an allocation saved is both memory and time. */
    Outcome read(const QStringList& above, QStringList& row);

    /** 0-based index of the last line taken, empty ones counted; -1 before. */
    int lineIndex() const { return m_line_index; }

    /** Bytes that all rows have taken so far. */
    qint64 takenBytes() const { return m_taken_bytes; }

private:
    Q_DISABLE_COPY(CsvRowReader)

    bool take(qint64 bytes);
    bool takeLine();
    bool appendField(const QStringList& above, const TextSpan& text, QStringList& row);
    Outcome appendQuoted(TextSpan field, const QStringList& above, QStringList& row);
    bool hasRoomForCopies(int characters) const;

    CsvLines& m_lines;
    CsvMemory& m_memory;
    CsvPieces m_pieces;
    const bool m_odd_delimiter; // it holds an odd number of double quotes
    TextSpan m_line;
    int m_line_index;
    qint64 m_taken_bytes;
};

#endif
