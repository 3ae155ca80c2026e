// The transfer tags as the host reaches them: through the driver.
#include "runtime/drivers/dmc50v3/transfer/csvimexporter.h"
#include "tests/unit/dmc50v3/driverfixture.h"

#include <QThread>

namespace {

class DriverTransfer : public DriverFixture {
protected:
    DriverTransfer() { project("NA1000 3-NA1020 PA0010004 NA2000"); }
};

} // namespace

TEST_F(DriverTransfer, TagsAreReadInTheirSizeWhateverTheirCase) {
    EXPECT_EQ(read("VVT_ENABLE0", Byte, 1), QByteArray(1, '\0'));
    EXPECT_EQ(read("vvt_anything", Word, 3), QByteArray(6, '\0'));
}

TEST_F(DriverTransfer, AWrittenTagIsReadBack) {
    EXPECT_TRUE(write("VVT_PROG_ID0", Byte, 1, QByteArray("\xFF", 1)));
    EXPECT_EQ(read("VVT_PROG_ID0", DoubleWord, 1), QByteArray("\xFF\xFF\xFF\xFF", 4));
    EXPECT_TRUE(write("VVT_UNKNOWN", Byte, 1, QByteArray("\x01", 1)));
}

TEST_F(DriverTransfer, TheFirstTagHandsTheProjectsProgramAddressesToTheExporter) {
    read("NA1000", DoubleWord, 1);
    EXPECT_EQ(m_probe->exporter(), nullptr);
    EXPECT_EQ(m_probe->programAddresses().size(), 3);
    read("VVT_ENABLE0", Byte, 1);
    ASSERT_NE(m_probe->exporter(), nullptr);
    EXPECT_TRUE(m_probe->programAddresses().isEmpty());
    CSVImExporter* const exporter = m_probe->exporter();
    write("VVT_PROG_COUNT0", Byte, 1, QByteArray(1, '\3'));
    EXPECT_EQ(m_probe->exporter(), exporter);
    EXPECT_EQ(exporter->progCount(), 3);
}

TEST_F(DriverTransfer, TheExporterKnowsTheProjectsProgramsAndWorksInItsOwnThread) {
    read("VVT_ENABLE0", Byte, 1);
    CSVImExporter* const exporter = m_probe->exporter();
    exporter->initReadWriteCommandList();
    EXPECT_FALSE(exporter->unregisteredAddrList().contains(QLatin1String("NA1000")));
    EXPECT_TRUE(exporter->unregisteredAddrList().contains(QLatin1String("NA1040")));
    EXPECT_NE(exporter->thread(), QThread::currentThread());
    EXPECT_TRUE(exporter->thread()->isRunning());
}

TEST_F(DriverTransfer, NothingReachesTheControllerThroughATag) {
    write("VVT_PROG_ID0", Byte, 1, QByteArray(1, '\1'));
    read("VVT_PROGRESS1", Byte, 1);
    EXPECT_TRUE(m_port.requests().isEmpty());
}

TEST_F(DriverTransfer, OrdinaryReadsAreEmptyWhileProgramsAreRead) {
    EXPECT_EQ(read("NA1000", DoubleWord, 1).size(), 4);
    m_driver->setProgramReading(true);
    EXPECT_TRUE(read("NA1000", DoubleWord, 1).isEmpty());
    EXPECT_EQ(read("WRITE_QUE_SIZE0", Word, 1), QByteArray(2, '\0'));
    EXPECT_EQ(read("VVT_ENABLE1", Byte, 1), QByteArray(1, '\0'));
    m_driver->setProgramReading(false);
    EXPECT_EQ(read("NA1000", DoubleWord, 1).size(), 4);
}

TEST_F(DriverTransfer, TheExporterOutlivesTheDriver) {
    read("VVT_ENABLE0", Byte, 1);
    CSVImExporter* const exporter = m_probe->exporter();
    deleteDriver();
    EXPECT_EQ(exporter->progID(), 0);
}
