#ifndef RUNTIME_PANEL_CSVPIECES_H
#define RUNTIME_PANEL_CSVPIECES_H

#include "runtime/panel/csvlines.h"

/** What encloses a field that holds a delimiter or the end of a line. */
const QChar CsvQuote = QLatin1Char('"');

/** Cuts a line at its delimiters, piece by piece, exactly as QString::split()
 *  with empty parts kept does: case-sensitively, at least one piece, and with
 *  an empty delimiter every character apart between two empty pieces. */
class CsvPieces {
public:
    explicit CsvPieces(const QString& delimiter)
        : m_delimiter(delimiter)
        , m_step(delimiter.isEmpty() ? 1 : 0)
        , m_search_offset(0)
        , m_more(false) {}

    /** Starts over with @p line, whose characters must outlive the pieces. */
    void start(const TextSpan& line) {
        m_rest = line;
        m_search_offset = 0;
        m_more = true;
    }

    /** Takes the next piece; false after the last one. Two pieces that follow
     *  each other have exactly the delimiter between them. */
    bool next(TextSpan& piece) {
        if (!m_more)
            return false;
        piece = TextSpan(m_rest.begin, findDelimiter());
        if (m_more) {
            m_rest.begin = piece.end + m_delimiter.size();
            m_search_offset = m_step;
        }
        return true;
    }

private:
    /** Where the next delimiter begins, or the line's end and no more pieces. */
    const QChar* findDelimiter() {
        m_more = m_search_offset <= m_rest.size();
        if (!m_more)
            return m_rest.end;
        const QChar* const from = m_rest.begin + m_search_offset;
        if (m_delimiter.isEmpty())
            return from;
        const QChar* const hit = m_delimiter.size() == 1
                                     ? std::find(from, m_rest.end, m_delimiter.at(0))
                                     : std::search(from, m_rest.end, m_delimiter.constData(),
                                                   m_delimiter.constData() + m_delimiter.size());
        m_more = hit != m_rest.end;
        return hit;
    }

    const QString m_delimiter;
    const int m_step;    // a search after an empty hit starts one further on
    TextSpan m_rest;     // from the next piece to the end of the line
    int m_search_offset; // into m_rest
    bool m_more;
};

#endif
