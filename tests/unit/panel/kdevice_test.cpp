#include "runtime/panel/kdevice.h"

#include "runtime/panel/armlinuxhmi.h"
#include "runtime/panel/x86linuxhmi.h"
#include "tests/support/fakemount.h"
#include "tests/support/fakeplatform.h"
#include "tests/support/messagelog.h"
#include "tests/support/scopedpanelpaths.h"
#include "tests/support/simulatedclock.h"
#include "tests/unit/panel/recordingstorage.h"
#include "tests/unit/panel/signalcounter.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace {

QString latin1(const char* text) {
    return QString::fromLatin1(text);
}

/** Writes down what the monitor asks of it, and tells activity at every pass. */
class ScriptedPlatform : public PlatformInterface {
public:
    void checkGlobalMountStatus() override { note("check"); }
    void processDeviceMountStatus() override { note("mounts"); }
    void processDeviceSpaceStatus() override { note("space"); }
    void processIOStatus() override {
        note("io");
        emit platDeviceInIO(1, 0, true);
        emit platDeviceMounted(2, 0, false);
    }
    quint64 getTotalSpace(DeviceType type) override { return 1000u + type; }
    quint64 getFreeSpace(DeviceType type) override { return 2000u + type; }
    QString getMount(DeviceType type) override { return QString::number(3000 + type); }

    QString calls() {
        std::lock_guard<std::mutex> lock(m_mutex);
        return QString(m_calls.constData(), m_calls.size()).trimmed();
    }

private:
    void note(const char* call) {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_calls += latin1(call) + QLatin1Char(' ');
    }

    std::mutex m_mutex; // guards m_calls
    QString m_calls;
};

class Monitor : public ::testing::Test {
protected:
    void SetUp() override { fakePlatform() = FakePlatform(); }
    void TearDown() override { fakePlatform() = FakePlatform(); }

    /** Lets the monitor's thread sleep for a second and work until it sleeps again. */
    void passASecond() {
        clock.waitForSleepers(1);
        clock.advance(1000);
        clock.waitForSleepers(1);
    }

    /** From now on time passes by itself whenever the monitor sleeps. */
    void letTimePass() { clock.setParticipants(1); }

    MessageLog log;
    SimulatedClock clock{0};
    ScriptedPlatform platform;
};

} // namespace

TEST_F(Monitor, TakesStockBeforeItsThreadStarts) {
    KDevice device(&platform, clock);
    EXPECT_EQ(platform.calls(), latin1("check mounts"));
    EXPECT_FALSE(device.isRunning());
}

TEST_F(Monitor, LooksForActivityEverySecondAndForMountsAndSpaceEveryTwo) {
    KDevice device(&platform, clock);
    device.start();
    clock.waitForSleepers(1);
    EXPECT_EQ(platform.calls(), latin1("check mounts io"));
    passASecond();
    EXPECT_EQ(platform.calls(), latin1("check mounts io io"));
    passASecond();
    EXPECT_EQ(platform.calls(), latin1("check mounts io io mounts space io"));
    passASecond();
    passASecond();
    EXPECT_EQ(platform.calls(), latin1("check mounts io io mounts space io io mounts space io"));
    letTimePass();
}

TEST_F(Monitor, SleepsAWholeSecond) {
    KDevice device(&platform, clock);
    device.start();
    clock.waitForSleepers(1);
    clock.advance(999);
    clock.waitForSleepers(1);
    EXPECT_EQ(platform.calls(), latin1("check mounts io"));
    letTimePass();
}

TEST_F(Monitor, StopsAfterASleepWithoutAnotherPass) {
    KDevice device(&platform, clock);
    device.start();
    clock.waitForSleepers(1);
    letTimePass();
    device.stopRunning();
    EXPECT_TRUE(device.isFinished());
    EXPECT_TRUE(platform.calls().endsWith(latin1("io"))) << "the sleep follows the activity";
}

TEST_F(Monitor, AnswersFromThePlatformUntilItIsStopped) {
    KDevice device(&platform, clock);
    EXPECT_EQ(device.getTotalSpace(DEVICE_ROOT), 1003u);
    EXPECT_EQ(device.getFreeSpace(DEVICE_SD), 2002u);
    EXPECT_EQ(device.getMount(DEVICE_USB), latin1("3001"));
    EXPECT_EQ(device.getMount(1), latin1("3001"));
    EXPECT_EQ(device.getMount(4), QString()) << "not a type";
    EXPECT_EQ(device.getMount(-1), QString());
    device.stopRunning();
    EXPECT_EQ(device.getTotalSpace(DEVICE_ROOT), 0u);
    EXPECT_EQ(device.getFreeSpace(DEVICE_SD), 0u);
    EXPECT_EQ(device.getMount(DEVICE_USB), QString());
    EXPECT_EQ(device.getMount(1), QString());
}

TEST_F(Monitor, AnswersThroughTheMetaObjectSystem) {
    KDevice device(&platform, clock);
    QString directory;
    ASSERT_TRUE(QMetaObject::invokeMethod(&device, "getMount", Qt::DirectConnection,
                                          Q_RETURN_ARG(QString, directory), Q_ARG(int, 1)));
    EXPECT_EQ(directory, latin1("3001"));
}

TEST_F(Monitor, DoesNotRunAgainOnceItWasStopped) {
    KDevice device(&platform, clock);
    device.stopRunning();
    device.start();
    EXPECT_TRUE(device.wait());
    EXPECT_EQ(platform.calls(), latin1("check mounts"));
}

TEST_F(Monitor, LeavesThePlatformAliveAtItsEnd) {
    { KDevice device(&platform, clock); }
    EXPECT_EQ(platform.getMount(DEVICE_USB), latin1("3001"));
}

TEST_F(Monitor, WithoutAPlatformAnswersNothingAndEndsAtOnce) {
    KDevice device(nullptr, clock);
    EXPECT_EQ(device.getTotalSpace(DEVICE_ROOT), 0u);
    EXPECT_EQ(device.getMount(DEVICE_USB), QString());
    device.start();
    EXPECT_TRUE(device.wait());
}

TEST_F(Monitor, RepeatsThePlatformsSignalsOnItsOwnersThread) {
    KDevice device(&platform, clock);
    SignalCounter in_io(&device, SIGNAL(deviceInIO(int, int, bool)));
    SignalCounter mounted(&device, SIGNAL(deviceMounted(int, int, bool)));
    platform.processIOStatus();
    EXPECT_EQ(in_io.value(), 1) << "directly on the same thread";
    device.start();
    clock.waitForSleepers(1);
    EXPECT_EQ(in_io.value(), 1) << "queued from the monitor's thread";
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(in_io.fromThisThread(), 2);
    EXPECT_EQ(mounted.fromThisThread(), 2);
    letTimePass();
}

TEST_F(Monitor, BuildsThePlatformThatTheHostNames) {
    KDevice device(nullptr, clock);
    EXPECT_EQ(device.determinePlatform(), 1);
    fakePlatform().x86_hmi = true;
    EXPECT_EQ(device.determinePlatform(), 2);
}

TEST_F(Monitor, HasAPlatformForEveryKindButZeroAndThree) {
    TemporaryDirectory directory;
    ScopedPanelPaths paths(directory.path());
    EXPECT_EQ(KDevice::makePlatform(0), nullptr);
    EXPECT_EQ(KDevice::makePlatform(3), nullptr);
    for (int kind : {-1, 1, 2, 4}) {
        const std::unique_ptr<PlatformInterface> made(KDevice::makePlatform(kind));
        EXPECT_EQ(dynamic_cast<X86LinuxHmi*>(made.get()) != nullptr, kind == 2) << kind;
        EXPECT_EQ(dynamic_cast<ArmLinuxHmi*>(made.get()) != nullptr, kind != 2) << kind;
    }
}

TEST_F(Monitor, AnswersWholeRecordsWhileDevicesComeAndGo) {
    TemporaryDirectory directory;
    ScopedPanelPaths paths(directory.path());
    FakeMount mount;
    RecordingStorage system;
    system.file_systems[latin1("/run/media/sda1")] = fileSystemOf(1000);
    ArmLinuxHmi hmi(system);
    KDevice device(&hmi, clock);

    std::atomic<bool> ready{false};
    std::vector<std::thread> callers;
    for (int i = 0; i < 3; ++i) {
        callers.emplace_back([&] {
            while (!ready) {
                const QString path = device.getMount(DEVICE_USB);
                EXPECT_TRUE(path.isEmpty() || path == latin1("/run/media/sda1"));
                EXPECT_EQ(device.getMount(DEVICE_NONE), QString());
                const quint64 total = device.getTotalSpace(DEVICE_USB);
                EXPECT_TRUE(total == 0 || total == 4096u * 1000);
                EXPECT_EQ(device.getFreeSpace(DEVICE_SD), 0u);
            }
        });
    }
    for (int round = 0; round < 20; ++round) {
        mount.setTable("/dev/sda1 on /run/media/sda1 type vfat (rw)\n");
        system.vanished.clear();
        hmi.processDeviceMountStatus();
        hmi.processDeviceSpaceStatus();
        hmi.processIOStatus();
        mount.setTable(QByteArray());
        system.vanished << latin1("/run/media/sda1");
        hmi.processDeviceMountStatus();
    }
    ready = true;
    for (std::thread& caller : callers)
        caller.join();
}
