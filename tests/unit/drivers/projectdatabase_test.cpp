#include "runtime/drivers/projectdatabase.h"

#include "runtime/interfaces/projectfiles.h"
#include "tests/support/temporarydirectory.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <gtest/gtest.h>

namespace {

QString text(const char* latin1) {
    return QString::fromLatin1(latin1);
}

/** The application's directory is a fresh, empty one. */
class ProjectPath : public testing::Test {
protected:
    ProjectPath() { qApp->setProperty(ApplicationDirProperty, m_directory.path()); }
    ~ProjectPath() override { qApp->setProperty(ApplicationDirProperty, QVariant()); }

    QString inside(const char* path) const { return m_directory.filePath(text(path)); }
    void makeFolder(const char* path) const {
        ASSERT_TRUE(QDir(m_directory.path()).mkpath(text(path)));
    }

    TemporaryDirectory m_directory;
};

/** A real SQLite file with the compiler's tables, opened read-only. */
class ProjectDatabase : public ProjectPath {
protected:
    ProjectDatabase() {
        makeFolder("compile/database");
        QSqlDatabase database = QSqlDatabase::addDatabase(text("QSQLITE"), name);
        database.setDatabaseName(GetDatabaseName());
        EXPECT_TRUE(database.open()) << database.lastError().text().toStdString();
        execute("CREATE TABLE LINK (LINKID INTEGER, HMIPORT INTEGER)");
        execute("CREATE TABLE NODE (LINKID INTEGER, STATIONID INTEGER, ISDEFAULT INTEGER,"
                " IP TEXT, PORT INTEGER)");
    }

    ~ProjectDatabase() override { QSqlDatabase::removeDatabase(name); }

    void execute(const char* statement) {
        QSqlQuery query(QSqlDatabase::database(name));
        EXPECT_TRUE(query.exec(text(statement))) << query.lastError().text().toStdString();
    }

    void reopenReadOnly() {
        QSqlDatabase database = QSqlDatabase::database(name);
        database.close();
        database.setConnectOptions(text("QSQLITE_OPEN_READONLY"));
        EXPECT_TRUE(database.open());
    }

    const QString name = text("project-database-test");
};

typedef QList<LinkIdStationId> Pairs;

} // namespace

TEST_F(ProjectPath, IsTheApplicationDirectoryUnlessItIsReplaced) {
    qApp->setProperty(ApplicationDirProperty, QVariant());
    EXPECT_EQ(GetCompilePath(), QDir(QCoreApplication::applicationDirPath()));
}

TEST_F(ProjectPath, UsesTheFixedFolderNames) {
    EXPECT_EQ(COMPILE_PATH, text("compile"));
    EXPECT_EQ(DATABASE_PATH, text("database"));
}

TEST_F(ProjectPath, EntersTheCompileFolderWhereItExists) {
    EXPECT_EQ(GetCompilePath().absolutePath(), m_directory.path());
    makeFolder("compile");
    EXPECT_EQ(GetCompilePath().absolutePath(), inside("compile"));
}

TEST_F(ProjectPath, NamesTheDatabaseFileInTheFoldersThatExist) {
    EXPECT_EQ(GetDatabaseName(), inside("database"));
    makeFolder("compile");
    EXPECT_EQ(GetDatabaseName(), inside("compile/database"));
    makeFolder("compile/database");
    EXPECT_EQ(GetDatabaseName(), inside("compile/database/database"));
}

TEST_F(ProjectPath, EntersADatabaseFolderBesideTheApplication) {
    makeFolder("database");
    EXPECT_EQ(GetDatabaseName(), inside("database/database"));
}

TEST_F(ProjectPath, DoesNotEnterAFileOfTheFoldersName) {
    m_directory.write(text("compile"), "not a folder");
    EXPECT_EQ(GetCompilePath().absolutePath(), m_directory.path());
}

TEST_F(ProjectDatabase, GivesLinkAndDefaultStationOfAPort) {
    execute("INSERT INTO LINK VALUES (4, 1000), (5, 1001)");
    execute("INSERT INTO NODE VALUES (4, 1, 1, '', 0), (5, 2, 0, '', 0), (5, 3, 1, '', 0)");
    reopenReadOnly();

    int link = -1;
    quint8 station = 0;
    EXPECT_TRUE(GetLinkIdAndDefaultStationId(name, 1001, link, station));
    EXPECT_EQ(link, 5);
    EXPECT_EQ(station, 3);
}

TEST_F(ProjectDatabase, LeavesTheResultsAloneWhenThePortHasNoLink) {
    execute("INSERT INTO LINK VALUES (4, 1000)");
    execute("INSERT INTO NODE VALUES (4, 1, 0, '', 0)"); // no default node

    int link = 77;
    quint8 station = 88;
    EXPECT_FALSE(GetLinkIdAndDefaultStationId(name, 1000, link, station));
    EXPECT_FALSE(GetLinkIdAndDefaultStationId(name, 1001, link, station));
    EXPECT_EQ(link, 77);
    EXPECT_EQ(station, 88);
}

TEST_F(ProjectDatabase, CutsStationsToEightBits) {
    execute("INSERT INTO LINK VALUES (4, 1000)");
    execute("INSERT INTO NODE VALUES (4, 258, 1, '', 0)");

    int link = 0;
    quint8 station = 0;
    EXPECT_TRUE(GetLinkIdAndDefaultStationId(name, 1000, link, station));
    EXPECT_EQ(station, 2);
}

TEST_F(ProjectDatabase, OpensAClosedConnectionAgain) {
    execute("INSERT INTO LINK VALUES (4, 1000)");
    execute("INSERT INTO NODE VALUES (4, 1, 1, '', 0)");
    QSqlDatabase::database(name).close();

    int link = 0;
    quint8 station = 0;
    EXPECT_TRUE(GetLinkIdAndDefaultStationId(name, 1000, link, station));
    EXPECT_EQ(link, 4);
}

TEST_F(ProjectDatabase, FindsNothingWithoutItsTablesOrItsConnection) {
    execute("DROP TABLE NODE");
    int link = 77;
    quint8 station = 88;
    Pairs pairs;
    EXPECT_FALSE(GetLinkIdAndDefaultStationId(name, 1000, link, station));
    EXPECT_FALSE(GetLinkIdAndDefaultStationId(name, 4, pairs));
    EXPECT_FALSE(GetLinkIdAndDefaultStationId(text("no such connection"), 1000, link, station));
    EXPECT_EQ(link, 77);
    EXPECT_TRUE(pairs.isEmpty());
}

TEST_F(ProjectDatabase, ListsEveryDefaultNodeOfAnEndpoint) {
    execute("INSERT INTO LINK VALUES (4, 2000), (5, 2000), (6, 2001)");
    execute("INSERT INTO NODE VALUES (4, 1, 1, '10.0.0.1', 502), (5, 2, 1, '10.0.0.1', 502),"
            " (5, 3, 1, '10.0.0.1', 503), (5, 4, 1, '10.0.0.2', 502),"
            " (5, 5, 0, '10.0.0.1', 502), (6, 6, 1, '10.0.0.1', 502)");

    Pairs pairs;
    EXPECT_TRUE(GetLinkIdAndDefaultStationId(name, 2000, text("10.0.0.1"), 502, pairs));
    ASSERT_EQ(pairs.size(), 2);
    EXPECT_EQ(pairs.at(0).link_id, 4);
    EXPECT_EQ(pairs.at(0).station_id, 1);
    EXPECT_EQ(pairs.at(1).link_id, 5);
    EXPECT_EQ(pairs.at(1).station_id, 2);
}

TEST_F(ProjectDatabase, TakesAnAddressTextWithQuotesAndPlaceMarksLiterally) {
    execute("INSERT INTO LINK VALUES (4, 2000)");
    execute("INSERT INTO NODE VALUES (4, 1, 1, 'it''s %1 %3', 502)");

    Pairs pairs;
    EXPECT_FALSE(GetLinkIdAndDefaultStationId(name, 2000, text("' OR '1' = '1"), 502, pairs));
    EXPECT_TRUE(GetLinkIdAndDefaultStationId(name, 2000, text("it's %1 %3"), 502, pairs));
    EXPECT_EQ(pairs.size(), 1);
}

TEST_F(ProjectDatabase, ListsTheDefaultNodesOfALink) {
    execute("INSERT INTO NODE VALUES (4, 1, 1, '', 0), (4, 2, 0, '', 0), (4, 259, 1, '', 0),"
            " (5, 9, 1, '', 0)");

    Pairs pairs;
    EXPECT_TRUE(GetLinkIdAndDefaultStationId(name, 4, pairs));
    ASSERT_EQ(pairs.size(), 2);
    EXPECT_EQ(pairs.at(0).link_id, 4);
    EXPECT_EQ(pairs.at(0).station_id, 1);
    EXPECT_EQ(pairs.at(1).station_id, 3);
}

TEST_F(ProjectDatabase, AppendsToTheListAndAnswersForAllOfIt) {
    Pairs pairs;
    EXPECT_FALSE(GetLinkIdAndDefaultStationId(name, 4, pairs));

    const LinkIdStationId known = {9, 9};
    pairs.append(known);
    EXPECT_TRUE(GetLinkIdAndDefaultStationId(name, 4, pairs));
    EXPECT_TRUE(GetLinkIdAndDefaultStationId(name, 2000, text("10.0.0.1"), 502, pairs));
    ASSERT_EQ(pairs.size(), 1);
    EXPECT_EQ(pairs.at(0).link_id, 9);
}
