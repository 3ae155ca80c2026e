#ifndef TESTS_CAMPAIGN_JOURNAL_H
#define TESTS_CAMPAIGN_JOURNAL_H

#include <QByteArray>
#include <QStringList>

#include <cstdio>
#include <deque>

namespace campaign {

/** What has passed over the line: the last pieces as text, and a number that stands
 *  for all of them with their times. */
class Journal {
public:
    /** @p what is a word for people: "request", "reply", "read" or a fault. */
    void note(qint64 usecs, const char* what, const QByteArray& bytes);

    /** Everything goes to @p file as well, which outlives the journal. */
    static void traceTo(std::FILE* file);

    quint64 digest() const { return m_digest; }
    QStringList last() const;

private:
    struct Entry {
        qint64 usecs;
        const char* what;
        QByteArray bytes;

        QString text() const;
    };
    void mix(const char* bytes, int count);

    std::deque<Entry> m_last; // oldest first
    quint64 m_digest = Q_UINT64_C(0xCBF29CE484222325);
};

} // namespace campaign

#endif
