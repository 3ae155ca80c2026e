#include "host/project/databasewriter.h"

#include "host/project/projectcheck.h"
#include "host/project/replacefile.h"
#include "runtime/interfaces/projectfiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

namespace host {

namespace {

/** A database under construction. Nobody else sees its file, so it needs neither
 *  journal nor waiting for the disk before it is complete. */
class NewDatabase {
public:
    explicit NewDatabase(const QString& path) : m_name(QUuid::createUuid().toString()) {
        m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
        m_database.setDatabaseName(path);
        m_ok = m_database.open();
        run("PRAGMA journal_mode = OFF");
        run("PRAGMA synchronous = OFF");
        run("BEGIN");
    }
    NewDatabase(const NewDatabase&) = delete;
    NewDatabase& operator=(const NewDatabase&) = delete;
    ~NewDatabase() {
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
    }

    void run(const char* statement, const QVariantList& values = QVariantList()) {
        if (!m_ok)
            return;
        QSqlQuery query(m_database);
        m_ok = query.prepare(QLatin1String(statement));
        for (const QVariant& value : values)
            query.addBindValue(value);
        m_ok = m_ok && query.exec();
        if (!m_ok)
            m_error = query.lastError().text();
    }

    Result<void> finish() {
        run("COMMIT");
        const QString problem = m_error.isEmpty() ? m_database.lastError().text() : m_error;
        m_database.close();
        if (!m_ok)
            return Failure(problem);
        return {};
    }

private:
    const QString m_name; // of the connection
    QSqlDatabase m_database;
    bool m_ok = false;
    QString m_error;
};

/** Double word @p index of the tag in the form that the tag was written in. */
QString rowAddress(const TagDefinition& tag, int index) {
    const QString& text = tag.address.text;
    QString row = text;
    if (index > 0) {
        const int head = text.startsWith(QLatin1String("PA")) ? 5 : 2; // "PA001" or "NA"
        const quint32 offset = text.mid(head).toUInt(nullptr, 16) + quint32(index);
        row = text.left(head) + QString::number(offset, 16)
                                    .toUpper()
                                    .rightJustified(text.size() - head, QLatin1Char('0'));
    }
    return tag.address.station ? QString::fromLatin1("%1-%2").arg(*tag.address.station).arg(row)
                               : row;
}

void writeLinks(const Project& project, NewDatabase& database) {
    database.run("CREATE TABLE LINK (LINKID INTEGER PRIMARY KEY, HMIPORT INTEGER, NAME TEXT)");
    for (const LinkDefinition& link : project.links)
        database.run("INSERT INTO LINK VALUES (?, ?, ?)",
                     {link.id, hmiPortNumber(link.hmi_port), link.name});
}

void writeNodes(const Project& project, NewDatabase& database) {
    database.run("CREATE TABLE NODE (STATIONID INTEGER, LINKID INTEGER, ISDEFAULT INTEGER, "
                 "IP TEXT, PORT INTEGER)");
    for (const NodeDefinition& node : project.nodes)
        database.run("INSERT INTO NODE VALUES (?, ?, ?, ?, ?)",
                     {node.station, node.link_id, int(node.is_default), node.ip, node.port});
}

/** The driver asks only for double words that have a row, so every double word of
 *  a tag gets one; bits share their double word's. */
void writeTags(const Project& project, NewDatabase& database) {
    database.run("CREATE TABLE custom_tag_table (address TEXT, connector_id INTEGER, name TEXT, "
                 "type TEXT, count INTEGER, unit TEXT)");
    QSet<QPair<int, QString>> written;
    for (const TagDefinition& tag : project.tags) {
        for (int i = 0; i < qMax(1, tag.dwords()); ++i) {
            const QString address = rowAddress(tag, i);
            if (written.contains({tag.link_id, address}))
                continue;
            written.insert({tag.link_id, address});
            database.run("INSERT INTO custom_tag_table VALUES (?, ?, ?, ?, ?, ?)",
                         {address, tag.link_id, tag.name, tag.type.name, tag.count, tag.unit});
        }
    }
}

} // namespace

Result<void> writeDatabase(const Project& project, const QString& panel_directory) {
    const QString target = projectDatabasePath(QDir(panel_directory).absolutePath());
    const QString folder = QFileInfo(target).absolutePath();
    if (!QDir().mkpath(folder))
        return Failure(QString::fromLatin1("%1: the folder cannot be made").arg(folder));
    const QString unfinished = target + QLatin1String(".new");
    QFile::remove(unfinished);
    NewDatabase database(unfinished);
    writeLinks(project, database);
    writeNodes(project, database);
    writeTags(project, database);
    const Result<void> finished = database.finish();
    if (finished)
        return replaceFile(unfinished, target);
    QFile::remove(unfinished);
    return Failure(QString::fromLatin1("%1: %2").arg(target, finished.error()));
}

} // namespace host
