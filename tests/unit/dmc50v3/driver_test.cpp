#include "runtime/interfaces/devicesetting.h"
#include "runtime/interfaces/driversetting.h"
#include "tests/support/scriptedport.h"
#include "tests/support/simulatedclock.h"
#include "tests/unit/dmc50v3/driverprobe.h"

#include <gtest/gtest.h>

namespace {

QString text(const char* latin1) {
    return QString::fromLatin1(latin1);
}

QList<CommunicatorCommand> oneCommand(const char* address) {
    QList<CommunicatorCommand> list;
    list.append(CommunicatorCommand(text(address), CommunicatorCommand::Word, 1));
    return list;
}

class Driver : public ::testing::Test {
protected:
    SimulatedClock m_clock;
    DriverDMC50v3 m_driver{m_clock};
    DriverProbe m_probe{m_driver};
};

} // namespace

TEST_F(Driver, TellsWhoItIs) {
    EXPECT_EQ(m_driver.name(), text("DMC50 v3"));
    EXPECT_EQ(m_driver.vender(), text("Yamatake"));
    EXPECT_EQ(m_driver.getVersionNumber(), text("1.0.0"));
    EXPECT_EQ(m_driver.totalSize(), 1024);
    EXPECT_EQ(m_driver.getBlockAccessSize(), 1024);
    EXPECT_EQ(m_driver.getBitBlockAccessSize(), 1024);
    EXPECT_EQ(m_driver.supportedCommunicationFlags(), 0x70);
    EXPECT_EQ(m_driver.getStringBasedDefaultDriverSetting(), text("RS485,38400,EVEN,8,1"));
    EXPECT_TRUE(m_driver.isSupportSessionCommand());
    EXPECT_EQ(m_driver.getThisObject(), &m_driver);
    EXPECT_TRUE(m_driver.initialize(nullptr));
    EXPECT_FALSE(m_driver.validation(text("PA0011000")));
    EXPECT_TRUE(m_driver.deviceSettingChanged(nullptr));
    EXPECT_TRUE(m_driver.isConnected(nullptr));
}

TEST_F(Driver, GivesDefaultSettingsThatTheCallerOwns) {
    const std::unique_ptr<DeviceSetting> device(m_driver.getDefaultSerialDeviceSetting());
    EXPECT_EQ(device->type, 0x40);
    EXPECT_EQ(device->string, text("COM2"));
    EXPECT_EQ(device->baudrate, 38400);
    EXPECT_EQ(device->databits, 8);
    EXPECT_EQ(device->stopbits, 0);
    EXPECT_EQ(device->parity, 2);
    const std::unique_ptr<DriverSetting> setting(m_driver.getDefaultDriverSetting());
    EXPECT_EQ(setting->timeout, 9000);
    EXPECT_EQ(setting->retry, 1);
    EXPECT_EQ(setting->stationid, 1);
    EXPECT_EQ(setting->delay, 20);
}

TEST_F(Driver, IsFoundByItsNamesThroughQt) {
    QObject* object = &m_driver;
    DriverInterface* const interface = &m_driver;
    EXPECT_EQ(object->qt_metacast("DriverDMC50v3"), static_cast<void*>(object));
    EXPECT_EQ(object->qt_metacast("DriverInterface"), static_cast<void*>(interface));
    EXPECT_EQ(object->qt_metacast("com.halvoric.drivers.DriverInterface/1.1"),
              static_cast<void*>(interface));
    EXPECT_EQ(object->qt_metacast("QObject"), static_cast<void*>(object));
    EXPECT_EQ(object->qt_metacast("PollingThread"), nullptr);
    EXPECT_STREQ(object->metaObject()->className(), "DriverDMC50v3");
    EXPECT_EQ(object->metaObject()->methodCount(), QObject::staticMetaObject.methodCount());
}

TEST_F(Driver, KeepsTheDebugMode) {
    EXPECT_FALSE(m_probe.debugMode());
    m_driver.setDebugMode(true);
    EXPECT_TRUE(m_probe.debugMode());
    m_driver.setDebugMode(false);
    EXPECT_FALSE(m_probe.debugMode());
}

TEST_F(Driver, HasADatabaseConnectionOfItsOwn) {
    DriverDMC50v3 other(m_clock);
    bool is_number = false;
    EXPECT_GE(m_probe.connectionName().toInt(&is_number), 0);
    EXPECT_TRUE(is_number);
    EXPECT_NE(m_probe.connectionName(), DriverProbe(other).connectionName());
}

TEST_F(Driver, ClearingTheErrorKeepsItsText) {
    m_driver.setCommError(text("broken"));
    EXPECT_TRUE(m_driver.hasError());
    m_driver.clearError();
    EXPECT_FALSE(m_driver.hasError());
    EXPECT_EQ(m_driver.getLastError(), text("broken"));
}

TEST_F(Driver, APrefixWithAColonIsPutBeforeTheErrorOnce) {
    m_driver.setCommError(text("broken"));
    m_driver.addStrToFrontOfErrorDescription(text("COM2: "));
    m_driver.addStrToFrontOfErrorDescription(text("COM2: "));
    EXPECT_EQ(m_driver.getLastError(), text("COM2: broken"));
}

TEST_F(Driver, APrefixWithoutAColonIsPutBeforeTheErrorEachTime) {
    m_driver.setCommError(text("broken"));
    m_driver.addStrToFrontOfErrorDescription(text("A "));
    m_driver.addStrToFrontOfErrorDescription(text("A "));
    EXPECT_EQ(m_driver.getLastError(), text("A A broken"));
}

TEST_F(Driver, TheThreadsErrorStandsEvenAfterTheOwnOneIsCleared) {
    ScriptedPort port(&m_clock);
    m_clock.setParticipants(2); // the thread stands still in its first pause
    m_probe.createThread(&port);
    m_clock.waitForSleepers(1);
    m_driver.setCommError(text("own"));
    m_probe.thread()->setCommError(text("line"));
    m_driver.clearError();
    EXPECT_TRUE(m_driver.hasError());
    EXPECT_EQ(m_driver.getLastError(), text("line"));
    m_probe.thread()->clearError();
    EXPECT_FALSE(m_driver.hasError());
    EXPECT_EQ(m_driver.getLastError(), text("own"));
    m_clock.setParticipants(1);
}

TEST_F(Driver, AnEmptySessionLeavesTheKeptOneUntouched) {
    m_driver.setSessionCommand(oneCommand("NA10"));
    m_driver.setSessionCommand(QList<CommunicatorCommand>());
    ASSERT_EQ(m_probe.keptSession().size(), 1);
    m_driver.setSessionCommand(oneCommand("NA11"));
    ASSERT_EQ(m_probe.keptSession().size(), 1);
    EXPECT_EQ(m_probe.keptSession().at(0).address(), text("NA11"));
    m_driver.clearSessionCommand(); // without a thread it does nothing
    EXPECT_EQ(m_probe.keptSession().size(), 1);
}

TEST_F(Driver, ParsesTheHostsAddresses) {
    EXPECT_EQ(m_driver.parseAddrStr(text("PA0011000")), 0x101000u);
    EXPECT_EQ(m_driver.parseAddrStr(text("pa00a0010")), 0xA00010u);
    EXPECT_EQ(m_driver.parseAddrStr(text("NA1F")), 0x1Fu);
    quint32 address = 0, bit = 0;
    EXPECT_TRUE(m_driver.parseBitAddr(text("PA0011000.33"), address, bit));
    EXPECT_EQ(address, 0x101000u);
    EXPECT_EQ(bit, 33u);
    EXPECT_TRUE(m_driver.parseBitAddr(text("na10.4"), address, bit));
    EXPECT_EQ(address, 0x10u);
    EXPECT_EQ(bit, 4u);
}

TEST_F(Driver, AMalformedAddressEndsTheProgram) {
    quint32 address = 0, bit = 0;
    EXPECT_DEATH(m_driver.parseAddrStr(text("D100")), "ASSERT: \"0\"");
    EXPECT_DEATH(m_driver.parseAddrStr(text("3-NA10")), "ASSERT: \"0\"");
    EXPECT_DEATH(m_driver.parseBitAddr(text("NA10"), address, bit), "ASSERT: \"0\"");
    EXPECT_DEATH(m_driver.parseBitAddr(text("3-NA10.1"), address, bit), "ASSERT: \"0\"");
}

TEST_F(Driver, CollectsTheValidAddressesOfARangeWithTheirPositions) {
    EXPECT_EQ(m_driver.getCommAddressesAndDataIndexes(0x10, 4, {0x0F, 0x11, 0x13, 0x14}), 2);
    EXPECT_EQ(m_probe.commAddresses(), AddressVector({0x11, 0x13}));
    EXPECT_EQ(m_probe.dataIndexes(), UCharVector({1, 3}));
    EXPECT_EQ(m_driver.getCommAddressesAndDataIndexes(0x10, 0, {0x10}), 0);
    EXPECT_TRUE(m_probe.commAddresses().empty());
}

TEST_F(Driver, DestructionWithoutAThreadAndWithASilentLineEnds) {
    ScriptedPort port(&m_clock);
    std::unique_ptr<DriverDMC50v3> idle(new DriverDMC50v3(m_clock));
    idle.reset();
    std::unique_ptr<DriverDMC50v3> busy(new DriverDMC50v3(m_clock));
    DriverProbe(*busy).createThread(&port);
    busy.reset();
    SUCCEED();
}
