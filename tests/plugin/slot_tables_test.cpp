#include "tests/plugin/fakeport.h"
#include "tests/plugin/loadedplugin.h"
#include "tests/support/testproject.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

class SlotTables : public ::testing::Test {
protected:
    SlotTables() : m_driver(createDriver()) {}

    /** Polls NA10 of stations 1 and 2 from the thread's start on. */
    void startSessionOfTwoStations() {
        m_project.create(1, QStringList()
                                << QString::fromLatin1("NA10") << QString::fromLatin1("2-NA10"));
        QList<host::Command> session;
        session.append(host::command("NA10", 3, 1, 4));
        session.append(host::command("2-NA10", 3, 1, 4));
        m_driver->setSession(session);
        EXPECT_EQ(m_driver->read(&m_port, host::command("INITDRV0", 2, 1, 2)), QByteArray(2, '\0'));
    }

    /** The stations of requests that began after the call. */
    QList<int> laterStations() {
        const int under_way = 3; // the rest of a scan
        const int so_far = m_port.waitForRequests(0).size();
        return m_port.waitForRequests(so_far + under_way + 6).mid(so_far + under_way);
    }

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
    startSessionOfTwoStations();
    const QList<int> stations = m_port.waitForRequests(4); // nobody has asked for a value
    EXPECT_EQ(stations.mid(0, 4), QList<int>() << 1 << 2 << 1 << 2);
    m_driver.reset();
    EXPECT_EQ(m_port.unexpected, 0);
}

TEST_F(SlotTables, RetriesAndPauseAreThePorts) {
    m_port.is_silent = true;
    m_port.response_timeout = 0; // taken for a retry or a pause, it would show
    m_port.retries = 2;
    m_port.frame_interval = 40;
    startSessionOfTwoStations();
    const QList<int> stations = m_port.waitForRequests(7);
    EXPECT_EQ(stations.mid(0, 7), QList<int>() << 1 << 1 << 1 << 2 << 2 << 2 << 1);
    const QList<qint64> sent = m_port.sentMsecs();
    for (int i = 1; i < sent.size(); ++i)
        EXPECT_GE(sent.at(i) - sent.at(i - 1), 40 - 1) << i; // both times are cut to ms
    m_driver.reset();
}

TEST_F(SlotTables, ClearingTheSessionIsNotSettingTheDebugMode) {
    startSessionOfTwoStations();
    m_port.waitForRequests(2); // the session is taken over
    m_driver->setDebugMode(true);
    EXPECT_TRUE(laterStations().contains(2));
    m_driver->clearSession(); // from now on a scan ends after its first run
    EXPECT_FALSE(laterStations().contains(2));
    m_driver.reset();
}

TEST_F(SlotTables, ADatabaseFailureComesBackThroughTheErrorSlots) {
    EXPECT_TRUE(m_driver->read(&m_port, host::command("NA10", 3, 1, 4)).isEmpty());
    EXPECT_TRUE(m_driver->hasError());
    EXPECT_EQ(m_driver->lastError(), text("can not open database"));
}
