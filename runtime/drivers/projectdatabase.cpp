#include "runtime/drivers/projectdatabase.h"

#include "runtime/interfaces/projectfiles.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

const QString COMPILE_PATH = QString::fromLatin1(CompileFolder);
const QString DATABASE_PATH = QString::fromLatin1(DatabaseFolder);

namespace {

QDir applicationDirectory() {
    const QVariant replaced = qApp->property(ApplicationDirProperty);
    return QDir(replaced.isValid() ? replaced.toString() : QCoreApplication::applicationDirPath());
}

QSqlQuery run(const QString& connection_name, const QString& statement) {
    return QSqlQuery(statement, QSqlDatabase::database(connection_name));
}

/** The low 8 bits of the unsigned number in @p column. */
quint8 stationAt(const QSqlQuery& row, int column) {
    return quint8(row.value(column).toUInt());
}

/** A text as it stands between single quotes. */
QString quoted(QString text) {
    return text.replace(QLatin1Char('\''), QLatin1String("''"));
}

} // namespace

QDir GetCompilePath() {
    QDir path = applicationDirectory();
    path.cd(COMPILE_PATH); // stays where there is none
    return path;
}

QString GetDatabaseName() {
    QDir path = GetCompilePath();
    path.cd(DATABASE_PATH); // stays where there is none
    return path.absoluteFilePath(QString::fromLatin1(DatabaseFile));
}

bool GetLinkIdAndDefaultStationId(const QString& connection_name, int hmi_port, int& link_id,
                                  quint8& station_id) {
    QSqlQuery row = run(
        connection_name,
        QString::fromLatin1("SELECT LINK.LINKID, NODE.STATIONID FROM LINK, NODE WHERE LINK.HMIPORT "
                            "= %1 AND NODE.LINKID = LINK.LINKID AND NODE.ISDEFAULT = 1;")
            .arg(hmi_port));
    if (!row.next())
        return false;
    link_id = row.value(0).toInt();
    station_id = stationAt(row, 1);
    return true;
}

bool GetLinkIdAndDefaultStationId(const QString& connection_name, int hmi_port, const QString& ip,
                                  int port, QList<LinkIdStationId>& pairs) {
    QSqlQuery row = run(
        connection_name,
        QString::fromLatin1("SELECT LINK.LINKID, NODE.STATIONID FROM LINK, NODE WHERE LINK.HMIPORT "
                            "= %1 AND NODE.LINKID = LINK.LINKID AND NODE.IP = '%2' AND NODE.PORT = "
                            "%3 AND NODE.ISDEFAULT = 1;")
            .arg(QString::number(hmi_port), quoted(ip), QString::number(port)));
    while (row.next()) {
        const LinkIdStationId pair = {row.value(0).toInt(), stationAt(row, 1)};
        pairs.append(pair);
    }
    return !pairs.isEmpty();
}

bool GetLinkIdAndDefaultStationId(const QString& connection_name, int link_id,
                                  QList<LinkIdStationId>& pairs) {
    QSqlQuery row = run(connection_name,
                        QString::fromLatin1("SELECT NODE.STATIONID FROM NODE WHERE NODE.LINKID = "
                                            "%1 AND NODE.ISDEFAULT = 1")
                            .arg(link_id));
    while (row.next()) {
        const LinkIdStationId pair = {link_id, stationAt(row, 0)};
        pairs.append(pair);
    }
    return !pairs.isEmpty();
}
