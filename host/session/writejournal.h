#ifndef HOST_SESSION_WRITEJOURNAL_H
#define HOST_SESSION_WRITEJOURNAL_H

#include "common/result.h"

#include <QSqlDatabase>
#include <QVariant>
#include <QVector>

#include <memory>

namespace host {

/** The journal of the writes of a panel directory. */
QString writeJournalPath(const QString& panel_directory);

/** One write as the journal has it; values as people read them. */
struct JournalEntry {
    qint64 begun_utc_msecs = 0;
    QString who;
    QString tag;
    QString old_value; // as it was known before; empty: unknown
    QString new_value;
};

/** Its end. */
struct JournalEnd {
    qint64 ended_utc_msecs = 0;
    QString outcome; // "confirmed", "refused", "expired"
    QString read_back;
    QString why;
};

/** Keeps a line of every write: begun before the driver learns of it, and its
 *  outcome when it has one. Each is on the disk when the call returns, so that
 *  the journal is whole whenever the program ends. Several programs and threads
 *  may have the same file open; one object belongs to one thread. */
class WriteJournal {
public:
    /** Makes the file if there is none. Never null. */
    static Result<std::unique_ptr<WriteJournal>> open(const QString& path);
    WriteJournal(const WriteJournal&) = delete;
    WriteJournal& operator=(const WriteJournal&) = delete;
    ~WriteJournal();

    /** Returns the line's number. */
    Result<qint64> begin(const JournalEntry& entry);
    Result<void> end(qint64 line, const JournalEnd& end);

    struct Line {
        qint64 number = 0;
        JournalEntry entry;
        JournalEnd end; // outcome "unknown": the program ended before the write did
    };

    /** The oldest first. */
    Result<QVector<Line>> lines() const;

private:
    WriteJournal(QString path, QString connection);

    Result<qint64> run(const char* statement, const QVariantList& values);

    const QString m_path;
    const QString m_connection; // its name
    QSqlDatabase m_database;
};

} // namespace host

#endif
