#include "tests/support/messagelog.h"
#include "tests/support/testproject.h"
#include "tests/unit/dmc50v3/driverprobe.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <gtest/gtest.h>

namespace {

class DriverDatabase : public ::testing::Test {
protected:
    bool load() { return m_driver.readDB(QString::fromLatin1("COM2")); }

    /** A project on COM2 with default station 5. */
    void create(const char* addresses) {
        m_project.create(5, QString::fromLatin1(addresses).split(QLatin1Char(' ')));
    }

    TestProject m_project;
    DriverDMC50v3 m_driver;
    DriverProbe m_probe{m_driver};
};
typedef DriverDatabase DriverDatabaseDeath;

QString text(const char* latin1) {
    return QString::fromLatin1(latin1);
}

} // namespace

TEST_F(DriverDatabase, PutsAddressesUnderTheirStations) {
    create("3-PA0010004 PA0010004 NA1F 3-na20 pa00a0010");
    ASSERT_TRUE(load());
    EXPECT_EQ(m_probe.defaultStation(), 5);
    EXPECT_EQ(m_probe.validAddresses().at(3), AddressVector({0x20, 0x100004}));
    EXPECT_EQ(m_probe.validAddresses().at(5), AddressVector({0x1F, 0x100004, 0xA00010}));
    EXPECT_EQ(m_probe.programAddresses(), QStringList() << text("NA1F") << text("3-na20"));
}

TEST_F(DriverDatabase, KeepsAnAddressListedTwiceTwice) {
    create("NA10 NA10");
    ASSERT_TRUE(load());
    EXPECT_EQ(m_probe.validAddresses().at(5), AddressVector({0x10, 0x10}));
}

TEST_F(DriverDatabase, LowLatencyRowsMarkStationsAndAddNoAddress) {
    create("2-LOWLATENCY LOWLATENCY");
    ASSERT_TRUE(load());
    EXPECT_EQ(m_probe.lowLatencyStations(), std::set<quint8>({2, 5}));
    EXPECT_TRUE(m_probe.validAddresses().empty());
}

TEST_F(DriverDatabase, SpecialTagsAreNotAddresses) {
    create("INITDRV0 3-INITDRV0 WRITE_QUE_SIZE0 VVT_ENABLE0 3-VVT_ERROR0 NA1");
    ASSERT_TRUE(load());
    ASSERT_EQ(m_probe.validAddresses().size(), 1u);
    EXPECT_EQ(m_probe.validAddresses().at(5), AddressVector({1}));
}

TEST_F(DriverDatabase, TakesTheTagsOfItsLinkOnly) {
    create("NA1");
    m_project.addLink(2, 1000);
    m_project.addNode(2, 7, true);
    m_project.addTags(2, QStringList(text("NA2")));
    ASSERT_TRUE(load());
    ASSERT_EQ(m_probe.validAddresses().size(), 1u);
    EXPECT_EQ(m_probe.validAddresses().at(5), AddressVector({1}));
}

TEST_F(DriverDatabase, AProjectWithoutTagsLoads) {
    m_project.create(5, QStringList());
    EXPECT_TRUE(load());
    EXPECT_TRUE(m_probe.validAddresses().empty());
}

TEST_F(DriverDatabaseDeath, AMalformedTagEndsTheProgram) {
    create("NA10 D100");
    EXPECT_DEATH(load(), "ASSERT: \"0\"");
}

TEST_F(DriverDatabaseDeath, ALowLatencyStationWithoutItsDashEndsTheProgram) {
    create("3LOWLATENCY");
    EXPECT_DEATH(load(), "\"id_str_len >= 1\"");
}

TEST_F(DriverDatabaseDeath, LowLatencyInSmallLettersEndsTheProgram) {
    create("lowlatency");
    EXPECT_DEATH(load(), "ASSERT: \"0\"");
}

TEST_F(DriverDatabase, LowLatencyCountsAnywhereInTheText) {
    create("NA10-LOWLATENCY 4-NA10.LOWLATENCY1");
    ASSERT_TRUE(load());
    EXPECT_EQ(m_probe.lowLatencyStations(), std::set<quint8>({4, 5}));
    EXPECT_TRUE(m_probe.validAddresses().empty());
}

TEST_F(DriverDatabase, AMissingFileIsReportedAtEveryAccessUntilItIsThere) {
    for (int attempt = 0; attempt < 2; ++attempt) { // the folder is missing, too
        m_driver.clearError();
        EXPECT_FALSE(load());
        EXPECT_TRUE(m_driver.hasError());
        EXPECT_EQ(m_driver.getLastError(), text("can not open database"));
    }
    create("NA1");
    EXPECT_TRUE(load());
    EXPECT_EQ(m_probe.validAddresses().at(5), AddressVector({1}));
}

TEST_F(DriverDatabase, IsClosedOnceItIsLoaded) {
    create("NA1");
    ASSERT_TRUE(load());
    ASSERT_TRUE(QSqlDatabase::contains(m_probe.connectionName()));
    EXPECT_FALSE(QSqlDatabase::database(m_probe.connectionName(), false).isOpen());
    EXPECT_FALSE(m_probe.isDatabaseOpened());
}

TEST_F(DriverDatabase, WithoutItsLinkEveryAccessFailsUntilTheDatabaseIsMended) {
    m_project.createDatabase();
    for (int attempt = 0; attempt < 3; ++attempt) {
        m_driver.clearError();
        EXPECT_FALSE(load());
        EXPECT_TRUE(m_driver.hasError());
        EXPECT_EQ(m_driver.getLastError(), text("failed to get default station id"));
    }
    m_project.addLink(1, 1001);
    m_project.addNode(1, 4, true);
    m_project.addTags(1, QStringList(text("NA1")));
    EXPECT_TRUE(load());
    EXPECT_EQ(m_probe.defaultStation(), 4);
}

TEST_F(DriverDatabase, ALinkWithoutADefaultNodeHasNoDefaultStation) {
    m_project.createDatabase();
    m_project.addLink(1, 1001);
    m_project.addNode(1, 4, false);
    EXPECT_FALSE(load());
    EXPECT_EQ(m_probe.defaultStation(), 1);
}

TEST_F(DriverDatabase, AMissingTagTableIsReported) {
    create("NA1");
    m_project.execute(text("DROP TABLE custom_tag_table"));
    EXPECT_FALSE(load());
    EXPECT_EQ(m_driver.getLastError(), text("failed to initialize valid addresses table"));
}

TEST_F(DriverDatabase, AFileThatIsNoDatabaseIsReported) {
    create("NA1");
    QFile file(m_project.databasePath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(4096, 'x'));
    file.close();
    EXPECT_FALSE(load());
    EXPECT_EQ(m_driver.getLastError(), text("failed to get default station id"));
}

TEST_F(DriverDatabase, IsReadOnceOnly) {
    create("NA1");
    ASSERT_TRUE(load());
    ASSERT_TRUE(QFile::remove(m_project.databasePath()));
    EXPECT_TRUE(load());
}

TEST_F(DriverDatabase, LoadingAgainReplacesTheAddressesOnly) {
    create("NA1 LOWLATENCY");
    ASSERT_TRUE(m_driver.createDBConnection());
    ASSERT_TRUE(m_driver.initValidAddressesMap(1, 5));
    ASSERT_TRUE(m_driver.initValidAddressesMap(1, 6));
    ASSERT_EQ(m_probe.validAddresses().size(), 1u);
    EXPECT_EQ(m_probe.validAddresses().at(6), AddressVector({1}));
    EXPECT_EQ(m_probe.lowLatencyStations(), std::set<quint8>({5, 6}));
    EXPECT_EQ(m_probe.programAddresses(), QStringList() << text("NA1") << text("NA1"));
}

TEST_F(DriverDatabase, AFailedLoadLeavesTheAddressesAsTheyWere) {
    create("NA1");
    ASSERT_TRUE(m_driver.createDBConnection());
    ASSERT_TRUE(m_driver.initValidAddressesMap(1, 5));
    m_project.execute(text("DROP TABLE custom_tag_table"));
    EXPECT_FALSE(m_driver.initValidAddressesMap(1, 6));
    ASSERT_EQ(m_probe.validAddresses().size(), 1u);
    EXPECT_EQ(m_probe.validAddresses().at(5), AddressVector({1}));
}

TEST_F(DriverDatabase, IsOpenedReadOnly) {
    create("NA1");
    ASSERT_TRUE(m_driver.createDBConnection());
    EXPECT_TRUE(m_driver.createDBConnection()); // the connection that is there
    QSqlQuery query(QSqlDatabase::database(m_probe.connectionName()));
    EXPECT_FALSE(query.exec(text("INSERT INTO LINK VALUES (9, 9)")));
    EXPECT_TRUE(load());
}

TEST_F(DriverDatabase, DumpsTheAddressesOfStationOne) {
    m_probe.validAddresses()[1] = {0x10, 0x101000};
    m_probe.validAddresses()[2] = {0x77};
    MessageLog log;
    m_driver.dumpValidAddrMap();
    EXPECT_EQ(log.messages(), QStringList() << text("dumpValidAddrMap----------")
                                            << text("00000010") << text("00101000"));
}

TEST_F(DriverDatabaseDeath, ADumpWithoutStationOneEndsTheProgram) {
    m_probe.validAddresses()[2] = {0x77};
    EXPECT_DEATH(m_driver.dumpValidAddrMap(), "\"m_valid_addresses_map.end\\(\\) != it\"");
}

TEST_F(DriverDatabase, DumpsTheScratchOfABlockRead) {
    m_driver.getCommAddressesAndDataIndexes(0x10, 3, {0x11});
    MessageLog log;
    m_driver.dumpCommAddressesAndDataIndexes();
    EXPECT_EQ(log.messages(),
              QStringList() << text("dumpCommAddressesAndDataIndexes---") << text("00000011, 1"));
}
