#include "runtime/interfaces/driversetting.h"

#include "tests/support/messagelog.h"

#include <QDataStream>

#include <gtest/gtest.h>

#include <cstddef>

namespace {

QString text(const char* latin1) {
    return QString::fromLatin1(latin1);
}

QByteArray streamed(const DriverSetting& setting) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << setting;
    return bytes;
}

void expectNumbers(const DriverSetting& setting, int timeout, int retry, int stationid, int delay) {
    EXPECT_EQ(setting.timeout, timeout);
    EXPECT_EQ(setting.retry, retry);
    EXPECT_EQ(setting.stationid, stationid);
    EXPECT_EQ(setting.delay, delay);
}

} // namespace

TEST(DriverSetting, HasTheHostsLayout) {
    EXPECT_EQ(offsetof(DriverSetting, timeout), 0U);
    EXPECT_EQ(offsetof(DriverSetting, retry), 4U);
    EXPECT_EQ(offsetof(DriverSetting, stationid), 8U);
    EXPECT_EQ(offsetof(DriverSetting, delay), 12U);
    EXPECT_EQ(offsetof(DriverSetting, text), 16U);
    EXPECT_EQ(offsetof(DriverSetting, flag), 16U + sizeof(QString));
}

TEST(DriverSetting, IsMadeOfFourNumbersWithAnEmptyText) {
    const DriverSetting setting(1000, 3, 1, 30);
    expectNumbers(setting, 1000, 3, 1, 30);
    EXPECT_TRUE(setting.text.isEmpty());
}

TEST(DriverSetting, IgnoresTheFifthAndSixthValueOfSix) {
    const DriverSetting setting(1000, 3, 1, 30, text("ignored"), 502);
    expectNumbers(setting, 1000, 3, 1, 30);
    EXPECT_TRUE(setting.text.isEmpty());
}

TEST(DriverSetting, KeepsTheSeventhAndEighthValueOfEight) {
    const DriverSetting setting(1000, 3, 1, 30, text("ignored"), 502, text("kept"), true);
    expectNumbers(setting, 1000, 3, 1, 30);
    EXPECT_EQ(setting.text, text("kept"));
    EXPECT_TRUE(setting.flag);
}

TEST(DriverSetting, CopiesAllButTheFlag) {
    const DriverSetting source(1000, 3, 1, 30, QString(), 0, text("kept"), true);
    DriverSetting target(0, 0, 0, 0, QString(), 0, text("old"), false);
    target.copy(source);
    expectNumbers(target, 1000, 3, 1, 30);
    EXPECT_EQ(target.text, text("kept"));
    EXPECT_FALSE(target.flag);
}

TEST(DriverSetting, IsStoredAsFourBigEndianNumbersByDefault) {
    EXPECT_EQ(streamed(DriverSetting(1000, 3, -1, 30, QString(), 0, text("x"), true)).toHex(),
              QByteArray("000003e8"
                         "00000003"
                         "ffffffff"
                         "0000001e"));
}

TEST(DriverSetting, FollowsTheByteOrderOfTheStream) {
    QByteArray bytes;
    QDataStream writer(&bytes, QIODevice::WriteOnly);
    writer.setByteOrder(QDataStream::LittleEndian);
    writer << DriverSetting(1000, 3, 1, 30);
    EXPECT_EQ(bytes.toHex(), QByteArray("e8030000"
                                        "03000000"
                                        "01000000"
                                        "1e000000"));

    QDataStream reader(bytes);
    reader.setByteOrder(QDataStream::LittleEndian);
    DriverSetting setting(0, 0, 0, 0);
    reader >> setting;
    expectNumbers(setting, 1000, 3, 1, 30);
}

TEST(DriverSetting, ReadsItsNumbersAndLeavesTextAndFlagAsTheyWere) {
    const QByteArray bytes =
        streamed(DriverSetting(1000, 3, -1, 30, QString(), 0, text("left behind"), false));
    QDataStream reader(bytes);
    DriverSetting setting(0, 0, 0, 0, QString(), 0, text("mine"), true);
    reader >> setting;
    expectNumbers(setting, 1000, 3, -1, 30);
    EXPECT_EQ(setting.text, text("mine"));
    EXPECT_TRUE(setting.flag);
    EXPECT_TRUE(reader.atEnd());
}

TEST(DriverSetting, DumpsOneLine) {
    const MessageLog log;
    DriverSetting(1000, 3, 1, 30).dump();
    ASSERT_EQ(log.messages().size(), 1);
    EXPECT_EQ(log.messages().first().trimmed(),
              text("timeout: 1000 retry: 3 stationid: 1 delay: 30"));
}
