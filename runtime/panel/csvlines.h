#ifndef RUNTIME_PANEL_CSVLINES_H
#define RUNTIME_PANEL_CSVLINES_H

#include "runtime/panel/csvmemory.h"

#include <QChar>
#include <QString>

#include <algorithm>
#include <deque>

class QTextStream;

/** A stretch of characters that somebody else owns. */
struct TextSpan {
    TextSpan() : begin(nullptr), end(nullptr) {}
    explicit TextSpan(const QString& whole)
        : begin(whole.constData()), end(whole.constData() + whole.size()) {}
    TextSpan(const QChar* from, const QChar* to) : begin(from), end(to) {}

    int size() const { return int(end - begin); }
    bool isEmpty() const { return begin == end; }
    /** A copy, empty but never null. */
    QString toString() const { return QString(begin, size()); }
    void appendTo(QString& text) const {
        const int old_size = text.size();
        text.resize(old_size + size()); // grows ahead, as append() does
        std::copy(begin, end, text.data() + old_size);
    }

    const QChar* begin;
    const QChar* end; // one past the last
};

/** All lines of a text stream, exactly as QTextStream::readLine() cuts them:
 *  at line feeds, which with a carriage return before them are dropped.
 *
 *  The number of lines must be known before the first is used, so the text has
 *  to be in memory whole; but as one copy in large blocks, each of which is
 *  freed once its lines have been taken. What the caller builds from the lines
 *  therefore grows while this shrinks. Time is linear in the text also for one
 *  endless line. */
class CsvLines {
public:
    /** Characters of the longest text: 512 MiB of memory. */
    static const qint64 MaxCharacters = 256 * 1024 * 1024;

    /** Reads @p stream to its end, or gives up after MaxCharacters or without
     *  room in @p memory, which must outlive this object and gets back what is
     *  freed: a file can be far longer than the memory, or without an end. */
    CsvLines(QTextStream& stream, CsvMemory& memory);

    /** True if the stream is longer; there are no lines then. */
    bool isTooLong() const { return m_is_too_long; }

    /** Lines in the stream, taken or not. */
    int count() const { return m_count; }

    /** A copy of the first line; only before the first next(), and only if
     *  there is one. */
    QString first() const;

    /** Takes the next line; false after the last one. @p line stays valid until
     *  the next call. */
    bool next(TextSpan& line);

private:
    Q_DISABLE_COPY(CsvLines)

    bool read(QTextStream& stream);
    void append(const QString& begun, const TextSpan& rest);
    bool openNextBlock();

    CsvMemory& m_memory;
    std::deque<QString> m_blocks; // whole lines each; with m_rest open, the front is being taken
    TextSpan m_rest;              // not yet taken of the front block
    int m_count;
    bool m_is_too_long;
};

#endif
