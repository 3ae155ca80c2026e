#include "host/session/writejournal.h"

#include <QDir>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

namespace host {

namespace {

const char Table[] = "CREATE TABLE IF NOT EXISTS writes (number INTEGER PRIMARY KEY AUTOINCREMENT, "
                     "begun_utc_ms INTEGER NOT NULL, who TEXT NOT NULL, tag TEXT NOT NULL, "
                     "old_value TEXT NOT NULL, new_value TEXT NOT NULL, "
                     "outcome TEXT NOT NULL DEFAULT 'begun', ended_utc_ms INTEGER, "
                     "read_back TEXT, why TEXT)";

/** A null QString would be stored as NULL. */
QString there(const QString& text) {
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace

QString writeJournalPath(const QString& panel_directory) {
    return QDir(panel_directory).filePath(QStringLiteral("journal.sqlite"));
}

WriteJournal::WriteJournal(QString path, QString connection)
    : m_path(std::move(path))
    , m_connection(std::move(connection))
    , m_database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection)) {
    m_database.setDatabaseName(m_path);
}

WriteJournal::~WriteJournal() {
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connection);
}

Result<std::unique_ptr<WriteJournal>> WriteJournal::open(const QString& path) {
    std::unique_ptr<WriteJournal> journal(
        new WriteJournal(path, QUuid::createUuid().toString(QUuid::WithoutBraces)));
    if (!journal->m_database.open())
        return Failure(
            QString::fromLatin1("%1: %2").arg(path, journal->m_database.lastError().text()));
    for (const char* statement : {"PRAGMA synchronous = FULL", Table}) {
        if (const auto done = journal->run(statement, {}); !done)
            return Failure(done.error());
    }
    return journal;
}

Result<qint64> WriteJournal::run(const char* statement, const QVariantList& values) {
    QSqlQuery query(m_database);
    bool ok = query.prepare(QLatin1String(statement));
    for (const QVariant& value : values)
        query.addBindValue(value);
    ok = ok && query.exec();
    if (!ok)
        return Failure(QString::fromLatin1("%1: %2").arg(m_path, query.lastError().text()));
    return query.lastInsertId().toLongLong();
}

Result<qint64> WriteJournal::begin(const JournalEntry& entry) {
    return run("INSERT INTO writes (begun_utc_ms, who, tag, old_value, new_value) "
               "VALUES (?, ?, ?, ?, ?)",
               {entry.begun_utc_msecs, there(entry.who), there(entry.tag), there(entry.old_value),
                there(entry.new_value)});
}

Result<void> WriteJournal::end(qint64 line, const JournalEnd& end) {
    return run("UPDATE writes SET outcome = ?, ended_utc_ms = ?, read_back = ?, why = ? "
               "WHERE number = ?",
               {end.outcome, end.ended_utc_msecs, there(end.read_back), there(end.why), line})
        .map([](qint64) {});
}

Result<QVector<WriteJournal::Line>> WriteJournal::lines() const {
    QSqlQuery query(m_database);
    if (!query.exec(QStringLiteral("SELECT number, begun_utc_ms, who, tag, old_value, new_value, "
                                   "ended_utc_ms, outcome, read_back, why FROM writes "
                                   "ORDER BY number")))
        return Failure(QString::fromLatin1("%1: %2").arg(m_path, query.lastError().text()));
    QVector<Line> lines;
    while (query.next()) {
        Line line;
        line.number = query.value(0).toLongLong();
        line.entry = {query.value(1).toLongLong(), query.value(2).toString(),
                      query.value(3).toString(), query.value(4).toString(),
                      query.value(5).toString()};
        line.end = {query.value(6).toLongLong(), query.value(7).toString(),
                    query.value(8).toString(), query.value(9).toString()};
        if (line.end.outcome == QLatin1String("begun"))
            line.end.outcome = QStringLiteral("unknown");
        lines.append(line);
    }
    return lines;
}

} // namespace host
