#include "tests/plugin/fakeport.h"
#include "tests/plugin/loadedplugin.h"
#include "tests/support/testproject.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

class SlotTables : public ::testing::Test {
protected:
    SlotTables() : m_driver(createDriver()) {}

    TestProject m_project;
    FakePort m_port;
    std::unique_ptr<host::Driver> m_driver;
};

QString text(const char* latin1) {
    return QString::fromLatin1(latin1);
}

} // namespace

TEST_F(SlotTables, EveryIdentitySlotAnswers) {
    EXPECT_EQ(m_driver->totalSize(), 1024);
    EXPECT_TRUE(m_driver->initialize(&m_port));
    EXPECT_FALSE(m_driver->validation(text("NA10")));
    EXPECT_EQ(m_driver->name(), text("DMC50 v3"));
    EXPECT_EQ(m_driver->vender(), text("Yamatake"));
    EXPECT_EQ(m_driver->version(), text("1.0.0"));
    EXPECT_EQ(m_driver->defaultText(), text("RS485,38400,EVEN,8,1"));
    EXPECT_EQ(m_driver->flags(), 0x70);
    m_driver->setDebugMode(true);
    EXPECT_EQ(m_driver->blockSize(), 1024);
    EXPECT_EQ(m_driver->bitBlockSize(), 1024);
    EXPECT_FALSE(m_driver->hasError());
    EXPECT_TRUE(m_driver->lastError().isEmpty());
    EXPECT_TRUE(m_driver->supportsSessions());
    m_driver->clearSession();
    EXPECT_TRUE(m_driver->deviceChanged(nullptr));
    EXPECT_TRUE(m_driver->isConnected(&m_port));
    EXPECT_EQ(m_driver->object()->qt_metacast("DriverInterface"), m_driver.get());
    EXPECT_EQ(m_port.unexpected, 0);
}

TEST_F(SlotTables, TheDefaultRecordsHaveTheHostsLayout) {
    const std::unique_ptr<host::DeviceRecord> device(m_driver->defaultDevice());
    EXPECT_EQ(device->type, 0x40);
    EXPECT_EQ(device->string, text("COM2"));
    EXPECT_EQ(device->baudrate, 38400);
    EXPECT_EQ(device->databits, 8);
    EXPECT_EQ(device->stopbits, 0);
    EXPECT_EQ(device->parity, 2);
    EXPECT_EQ(device->seventh, 0);
    EXPECT_TRUE(device->eighth.isEmpty());
    EXPECT_EQ(device->link_id, -1);
    EXPECT_EQ(device->ip_index, 0);
    EXPECT_TRUE(device->endpoints.isEmpty());
    const std::unique_ptr<host::DriverRecord> setting(m_driver->defaultDriver());
    EXPECT_EQ(setting->timeout, 9000);
    EXPECT_EQ(setting->retry, 1);
    EXPECT_EQ(setting->stationid, 1);
    EXPECT_EQ(setting->delay, 20);
    EXPECT_TRUE(setting->text.isEmpty());
}

TEST_F(SlotTables, ATagIsReadAndWrittenThroughThePortsSlots) {
    m_project.create(1, QStringList() << text("NA10") << text("7-NA10"));
    m_port.station = 7;
    m_port.controller.setValue(7, 0x10, 0x11223344);
    EXPECT_EQ(m_driver->read(&m_port, host::command("NA10", 3, 1, 4)),
              QByteArray("\x44\x33\x22\x11"));
    EXPECT_TRUE(
        m_driver->write(&m_port, host::command("NA10", 3, 1, 4), QByteArray("\x01\0\0\0", 4)));
    // A read of another address waits for the line, so the write is out by then.
    while (m_driver->read(&m_port, host::command("WRITE_QUE_SIZE0", 2, 1, 2)) !=
           QByteArray(2, '\0'))
        continue;
    m_driver->read(&m_port, host::command("NA10", 3, 1, 4));
    EXPECT_EQ(m_port.controller.value(7, 0x10), 1u);
    EXPECT_GE(m_port.controls, 3);
    EXPECT_EQ(m_port.unexpected, 0);
    m_driver.reset();
}

TEST_F(SlotTables, TheCommandsSizeComesFromTheHostsOwnTable) {
    m_project.create(1, QStringList(text("NA10")));
    EXPECT_EQ(m_driver->read(&m_port, host::command("INITDRV0", 2, 1, 5)), QByteArray(5, '\0'));
    m_driver.reset();
}

TEST_F(SlotTables, ASessionGivenBeforeTheFirstAccessIsPolled) {
    m_project.create(1, QStringList(text("NA10")));
    QList<host::Command> session;
    session.append(host::command("NA10", 3, 1, 4));
    m_driver->setSession(session);
    EXPECT_EQ(m_driver->read(&m_port, host::command("NA10", 3, 1, 4)), QByteArray(4, '\0'));
    m_driver.reset();
    EXPECT_EQ(m_port.unexpected, 0);
}

TEST_F(SlotTables, ADatabaseFailureComesBackThroughTheErrorSlots) {
    EXPECT_TRUE(m_driver->read(&m_port, host::command("NA10", 3, 1, 4)).isEmpty());
    EXPECT_TRUE(m_driver->hasError());
    EXPECT_EQ(m_driver->lastError(), text("can not open database"));
}
