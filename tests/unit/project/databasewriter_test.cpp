#include "host/project/databasewriter.h"

#include "host/project/paneldirectory.h"
#include "host/project/projectcheck.h"
#include "runtime/interfaces/projectfiles.h"
#include "tests/support/errorof.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QVariant>

#include <gtest/gtest.h>

using namespace host;

namespace {

const char PanelToml[] = R"([[link]]
name = "line"
port = "/dev/ttyUSB0"
[[node]]
station = 1
default = true
[[node]]
station = 2
ip = "10.0.0.7"
port = 4001
[[tag]]
name = "three"
address = "PA001fffe"
count = 3
unit = "°C"
[[tag]]
name = "word pair"
address = "2-NA1f"
type = "word"
count = 3
[[tag]]
name = "bit across"
address = "NA100.31"
count = 2
[[tag]]
name = "same double word"
address = "NA100.0"
[[tag]]
name = "low"
address = "2-lowlatency"
[[tag]]
name = "queue"
address = "WRITE_QUE_SIZE0"
)";

class DatabaseWriter : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_directory.isValid());
        writeProject(PanelToml);
    }

    void writeProject(const QByteArray& text) {
        QFile file(m_directory.filePath(QLatin1String(ProjectFile)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    QString panel() const { return m_directory.filePath(QStringLiteral("panel")); }
    QString database() const { return projectDatabasePath(panel()); }

    /** The rows of a query, columns joined by "|". */
    QStringList rows(const QString& query_text) {
        QStringList found;
        {
            QSqlDatabase opened = QSqlDatabase::addDatabase("QSQLITE", "test");
            opened.setDatabaseName(database());
            opened.setConnectOptions("QSQLITE_OPEN_READONLY");
            EXPECT_TRUE(opened.open());
            QSqlQuery query(query_text, opened);
            const int columns = query_text.section(" FROM ", 0, 0).count(',') + 1;
            while (query.next()) {
                QStringList row;
                for (int i = 0; i < columns; ++i)
                    row += query.value(i).toString();
                found += row.join('|');
            }
        }
        QSqlDatabase::removeDatabase("test");
        return found;
    }

    QTemporaryDir m_directory;
};

} // namespace

TEST_F(DatabaseWriter, FindsTheDefaultStationOfAPortByTheDriversQuery) {
    ASSERT_EQ(errorOf(buildPanelDirectory(m_directory.path(), panel())), QStringList());
    EXPECT_EQ(rows("SELECT LINK.LINKID, NODE.STATIONID FROM LINK, NODE WHERE LINK.HMIPORT = 1001 "
                   "AND NODE.LINKID = LINK.LINKID AND NODE.ISDEFAULT = 1;"),
              QStringList("1|1"));
    EXPECT_EQ(rows("SELECT STATIONID, IP, PORT FROM NODE WHERE ISDEFAULT = 0"),
              QStringList("2|10.0.0.7|4001"));
}

TEST_F(DatabaseWriter, GivesEveryDoubleWordOfATagARowInTheTagsOwnForm) {
    ASSERT_EQ(errorOf(buildPanelDirectory(m_directory.path(), panel())), QStringList());
    EXPECT_EQ(rows("SELECT address FROM custom_tag_table WHERE connector_id = 1 AND address NOT "
                   "LIKE '%INITDRV0' AND address NOT LIKE 'WRITE_QUE_SIZE%' AND address NOT LIKE "
                   "'VVT_%';"),
              QStringList({"PA001FFFE", "PA001FFFF", "PA00110000", "2-NA1F", "2-NA20", "NA100",
                           "NA101", "2-LOWLATENCY"}));
}

TEST_F(DatabaseWriter, KeepsNameTypeCountAndUnitBesideTheAddress) {
    ASSERT_EQ(errorOf(buildPanelDirectory(m_directory.path(), panel())), QStringList());
    EXPECT_EQ(rows("SELECT name, type, count, unit FROM custom_tag_table WHERE address = "
                   "'PA001FFFE'"),
              QStringList(QString::fromUtf8("three|dword|3|°C")));
}

TEST_F(DatabaseWriter, PutsTheProjectFileBesideTheDatabaseSoThatThePanelDirectoryCanMove) {
    ASSERT_EQ(errorOf(buildPanelDirectory(m_directory.path(), panel())), QStringList());
    EXPECT_TRUE(isPanelDirectory(panel()));
    EXPECT_FALSE(isPanelDirectory(m_directory.path()));
    EXPECT_TRUE(readProjectFile(panel() + "/panel.toml"));
}

TEST_F(DatabaseWriter, LeavesTheOldDatabaseUntouchedWhenTheFileIsBad) {
    ASSERT_EQ(errorOf(buildPanelDirectory(m_directory.path(), panel())), QStringList());
    const QStringList before = rows("SELECT address FROM custom_tag_table");
    writeProject(QByteArray(PanelToml) + "[[tag]]\nname = \"bad\"\naddress = \"PAX\"\n");
    const QString file = m_directory.filePath("panel.toml");
    EXPECT_EQ(errorOf(buildPanelDirectory(m_directory.path(), panel())).join('\n').toStdString(),
              (file + ":36:11: 'X' in 'PAX' is not a hexadecimal digit").toStdString());
    EXPECT_EQ(rows("SELECT address FROM custom_tag_table"), before);
    EXPECT_EQ(QDir(QFileInfo(database()).path()).entryList(QDir::Files), QStringList("database"));
}

TEST_F(DatabaseWriter, ReplacesADatabaseOfAnEarlierBuild) {
    ASSERT_EQ(errorOf(buildPanelDirectory(m_directory.path(), panel())), QStringList());
    writeProject(QByteArray(PanelToml).replace("PA001fffe", "PA0050000"));
    ASSERT_EQ(errorOf(buildPanelDirectory(m_directory.path(), panel())), QStringList());
    EXPECT_EQ(rows("SELECT address FROM custom_tag_table").first(), QString("PA0050000"));
}

TEST_F(DatabaseWriter, SaysWhyItCannotWrite) {
    QFile in_the_way(panel());
    ASSERT_TRUE(in_the_way.open(QIODevice::WriteOnly));
    EXPECT_EQ(errorOf(buildPanelDirectory(m_directory.path(), panel())),
              QStringList(panel() + "/compile/database: the folder cannot be made"));
}

TEST_F(DatabaseWriter, NamesAMissingProjectFile) {
    EXPECT_EQ(errorOf(buildPanelDirectory("/nowhere", panel())),
              QStringList("/nowhere/panel.toml: No such file or directory"));
}

TEST_F(DatabaseWriter, TellsThePluginWhereThePanelDirectoryIs) {
    setPanelDirectory(panel());
    EXPECT_EQ(qApp->property("PanelApplicationDir").toString(), panel());
    qApp->setProperty("PanelApplicationDir", QVariant());
}

TEST_F(DatabaseWriter, WritesTheSampleProjectButNeverOverAnother) {
    const QString fresh = m_directory.filePath("fresh");
    ASSERT_EQ(errorOf(writeSampleProject(fresh)), QString());
    EXPECT_EQ(errorOf(buildPanelDirectory(fresh, fresh)), QStringList());
    EXPECT_EQ(errorOf(writeSampleProject(fresh)), fresh + "/panel.toml exists already");
}

TEST(HmiPortNumber, CountsSerialPortsFromAThousand) {
    EXPECT_EQ(hmiPortNumber("COM1"), 1000);
    EXPECT_EQ(hmiPortNumber("COM2"), 1001);
    EXPECT_EQ(hmiPortNumber("COM99"), 1098);
    EXPECT_EQ(hmiPortNumber("ETHERNET1"), 2000);
    for (const char* wrong : {"", "COM", "COM0", "COM100", "com2", "2", "USB1", "COM2x"})
        EXPECT_EQ(hmiPortNumber(wrong), 0) << wrong;
}
