#include "runtime/drivers/dmc50v3/cplline.h"

#include "runtime/drivers/polling/commerror.h"
#include "tests/support/memorycontroller.h"
#include "tests/support/scheduledclock.h"
#include "tests/support/scriptedport.h"

#include <gtest/gtest.h>

namespace {

class CPLLineTest : public ::testing::Test {
protected:
    void answerWith(const QByteArray& reply) {
        m_port.setAnswer([reply](const QByteArray&) { return reply; });
    }

    ScheduledClock m_clock;
    ScriptedPort m_port{&m_clock};
    CommError m_error;
    CPLLine m_line{m_port, m_clock, 40, m_error};
};

} // namespace

TEST_F(CPLLineTest, PausesForTheFrameInterval) {
    m_line.pause();
    EXPECT_EQ(m_clock.sleeps(), std::vector<quint32>({40}));
}

TEST_F(CPLLineTest, DiscardsWhatHasComeThenReadsTheValuesInOrder) {
    m_port.receive("stale");
    answerWith(cplFrame("0200X00000000C812345678"));
    const quint32 addresses[] = {0x2016, 0x10};
    quint32 values[] = {0, 0, 99};
    EXPECT_TRUE(m_line.read(2, addresses, 2, values));
    EXPECT_EQ(m_port.calls(), QList<QByteArray>()
                                  << "control 12 0" << cplFrame("0200XRN00LL0000201600000010"));
    EXPECT_EQ(values[0], 200u);
    EXPECT_EQ(values[1], 0x12345678u);
    EXPECT_EQ(values[2], 99u);
    EXPECT_FALSE(m_error.isSet());
    EXPECT_TRUE(m_clock.sleeps().empty());
}

TEST_F(CPLLineTest, AFailedReadSetsTheErrorOfItsFirstAddressAndNoValue) {
    answerWith(cplFrame("0200X4A000000C8"));
    const quint32 addresses[] = {0x2016, 0x10};
    quint32 values[] = {7, 8};
    EXPECT_FALSE(m_line.read(2, addresses, 2, values));
    EXPECT_TRUE(m_error.isSet());
    EXPECT_EQ(m_error.text().toStdString(),
              "read station id#2 start address 00002016:end code 4AH");
    EXPECT_EQ(values[0], 7u);
}

TEST_F(CPLLineTest, WritesPairs) {
    answerWith(cplFrame("0300X00"));
    EXPECT_TRUE(m_line.write(3, {{0x2012, 1}, {0x2014, 200}}));
    EXPECT_EQ(m_port.calls(), QList<QByteArray>()
                                  << "control 12 0"
                                  << cplFrame("0300XWN00LL000020120000000100002014000000C8"));
    EXPECT_FALSE(m_error.isSet());
}

TEST_F(CPLLineTest, AFailedWriteSetsTheErrorOfItsFirstAddress) {
    answerWith(cplFrame("0100X00"));
    EXPECT_FALSE(m_line.write(3, {{0x2012, 1}, {0x2014, 200}}));
    EXPECT_TRUE(m_error.isSet());
    EXPECT_EQ(m_error.text().toStdString(),
              "write station id#3 address 00002012invalid station id from DMC50");
}

TEST_F(CPLLineTest, ASuccessLeavesAnErrorToItsCaller) {
    m_error.set(QString::fromLatin1("lost"));
    answerWith(cplFrame("0100X0000000001"));
    const quint32 address = 0x10;
    quint32 value = 0;
    EXPECT_TRUE(m_line.read(1, &address, 1, &value));
    EXPECT_TRUE(m_line.write(1, {{0x10, 1}}));
    EXPECT_TRUE(m_error.isSet());
}

TEST_F(CPLLineTest, AShortReplyShowsNothingOfTheOneBefore) {
    const quint32 addresses[] = {1, 2, 3};
    quint32 values[3];
    answerWith(cplFrame("0100X00111111112222222233333333"));
    EXPECT_TRUE(m_line.read(1, addresses, 3, values));
    answerWith(cplFrame("0100X0000000007"));
    EXPECT_TRUE(m_line.read(1, addresses, 3, values));
    EXPECT_EQ(values[0], 7u);
    EXPECT_EQ(values[1], 0u);
    EXPECT_EQ(values[2], 0u);
}

TEST_F(CPLLineTest, TheControllersLimitsAreTheLines) {
    EXPECT_EQ(m_line.maxReadAddresses(), 50);
    EXPECT_EQ(m_line.maxWritePairs(), 25);
}

TEST_F(CPLLineTest, TheLongestRequestsFitTheBuffer) {
    answerWith(cplFrame("0100X00" + QByteArray("00000001").repeated(50)));
    const std::vector<quint32> addresses(50, 0xABCDEF01);
    std::vector<quint32> values(50);
    EXPECT_TRUE(m_line.read(1, addresses.data(), 50, values.data()));
    EXPECT_EQ(values, std::vector<quint32>(50, 1));
    EXPECT_TRUE(m_line.write(1, std::vector<AddrArg>(25, AddrArg{1, 2})));
    EXPECT_EQ(m_port.requests().at(0),
              cplFrame("0100XRN00LL" + QByteArray("ABCDEF01").repeated(50)));
    EXPECT_EQ(m_port.requests().at(1),
              cplFrame("0100XWN00LL" + QByteArray("0000000100000002").repeated(25)));
}
