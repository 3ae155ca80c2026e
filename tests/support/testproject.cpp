#include "tests/support/testproject.h"

#include <QCoreApplication>
#include <QDir>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <gtest/gtest.h>

namespace {

const char Property[] = "PanelApplicationDir"; // as the contract has it, written down a second time
const char Folder[] = "compile/database";

} // namespace

TestProject::TestProject() {
    qApp->setProperty(Property, m_directory.path());
}

TestProject::~TestProject() {
    qApp->setProperty(Property, QVariant());
}

QString TestProject::databasePath() const {
    return m_directory.filePath(QString::fromLatin1(Folder) + QString::fromLatin1("/database"));
}

void TestProject::createDatabase() {
    EXPECT_TRUE(QDir(m_directory.path()).mkpath(QString::fromLatin1(Folder)));
    execute(QString::fromLatin1("CREATE TABLE LINK (LINKID INTEGER, HMIPORT INTEGER)"));
    execute(QString::fromLatin1("CREATE TABLE NODE (LINKID INTEGER, STATIONID INTEGER, "
                                "ISDEFAULT INTEGER, IP TEXT, PORT INTEGER)"));
    execute(
        QString::fromLatin1("CREATE TABLE custom_tag_table (address TEXT, connector_id INTEGER)"));
}

void TestProject::addLink(int link_id, int hmi_port) {
    execute(QString::fromLatin1("INSERT INTO LINK VALUES (%1, %2)").arg(link_id).arg(hmi_port));
}

void TestProject::addNode(int link_id, int station, bool is_default) {
    execute(QString::fromLatin1("INSERT INTO NODE VALUES (%1, %2, %3, '', 0)")
                .arg(link_id)
                .arg(station)
                .arg(is_default ? 1 : 0));
}

void TestProject::addTags(int link_id, const QStringList& addresses) {
    if (addresses.isEmpty())
        return;
    QStringList rows;
    for (int i = 0; i < addresses.size(); ++i)
        rows.append(QString::fromLatin1("('%1', %2)").arg(addresses.at(i)).arg(link_id));
    execute(QString::fromLatin1("INSERT INTO custom_tag_table VALUES ") +
            rows.join(QString::fromLatin1(", ")));
}

void TestProject::create(int station, const QStringList& addresses) {
    createDatabase();
    addLink(1, 1001);
    addNode(1, station, true);
    addTags(1, addresses);
}

void TestProject::execute(const QString& statement) {
    const QString name = QString::fromLatin1("test-project");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QString::fromLatin1("QSQLITE"), name);
        database.setDatabaseName(databasePath());
        EXPECT_TRUE(database.open()) << database.lastError().text().toStdString();
        QSqlQuery query(database);
        EXPECT_TRUE(query.exec(QString::fromLatin1("PRAGMA synchronous = OFF"))); // a test's file
        EXPECT_TRUE(query.exec(statement)) << query.lastError().text().toStdString();
    }
    QSqlDatabase::removeDatabase(name);
}
