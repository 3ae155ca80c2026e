// A transfer of the loaded plug-in, as a host sees it. A program of its own: once
// a transfer has run, the plug-in stays.
#include "tests/plugin/fakeport.h"
#include "tests/plugin/servicehost.h"
#include "tests/support/testproject.h"

#include "runtime/panel/kdevice.h"

#include <QCoreApplication>

#include <thread>

namespace {

const char NoStick[] = "DMC50\nThe system can't not detect the USB Stick.";

class PluginTransfer : public ServiceHost {
protected:
    void SetUp() override {
        PanelPaths paths = panelPaths();
        paths.simulator_usb_mounts = m_directory.filePath(QString::fromLatin1("no stick"));
        setPanelPaths(paths);
        m_project.create(1, QStringList(QString::fromLatin1("NA10")));
        ServiceHost::SetUp();
        m_driver.reset(inPlugin<host::Driver*()>("CreateDriver")());
    }

    ~PluginTransfer() override {
        m_driver.reset();
        KDevice::dropInstance(); // its thread uses the paths
    }

    /** A controller-to-file transfer, which is the plug-in's own thread's. */
    void start() { EXPECT_TRUE(m_driver->write(&m_port, enable(), QByteArray(1, '\1'))); }

    bool isRunning() { return m_driver->read(&m_port, enable()) != QByteArray(1, '\0'); }

    static host::Command enable() { return host::command("VVT_ENABLE1", 1, 1, 1); }

    /** Until the host's panel has an entry; ctest ends a test that waits in vain. */
    void waitForEntry() {
        while (entries().count() == 0)
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }

    TestProject m_project;
    FakePort m_port;
    std::unique_ptr<host::Driver> m_driver;
};

} // namespace

TEST_F(PluginTransfer, ReportsToTheHostsMessagePanel) {
    start();
    waitForEntry();
    EXPECT_EQ(QString::fromLatin1(NoStick), firstEntry());
    EXPECT_EQ(1, entries().count());
    while (isRunning())
        std::this_thread::yield();
    EXPECT_EQ(0, m_port.unexpected);
}

TEST_F(PluginTransfer, GoesOnThoughThePluginIsUnloadedUnderIt) {
    start();
    m_driver.reset();
    unload();
    waitForEntry(); // from code that would be gone
    EXPECT_EQ(QString::fromLatin1(NoStick), firstEntry());
    EXPECT_TRUE(isLoaded());
}
