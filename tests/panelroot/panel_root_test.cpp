// Runs in the file tree that run_in_panel_root.sh makes, and nowhere else.
#include "runtime/panel/armlinuxhmi.h"
#include "runtime/panel/kbuzzer.h"
#include "runtime/panel/kdevice.h"
#include "runtime/panel/ksetting.h"
#include "runtime/panel/x86linuxhmi.h"
#include "tests/panelroot/mountpoint.h"
#include "tests/support/fakeplatform.h"
#include "tests/support/messagelog.h"
#include "tests/support/simulatedclock.h"
#include "tests/support/storagesignals.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QVariant>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>
#include <sys/statvfs.h>
#include <thread>
#include <vector>

namespace {

QString latin1(const char* text) {
    return QString::fromLatin1(text);
}

QByteArray contentOf(const char* path) {
    QFile file(latin1(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    return file.readAll();
}

/** Keeps the tests from unmounting the disks of a machine. */
class PanelRoot : public ::testing::Test {
protected:
    void SetUp() override {
        if (!QFile::exists(latin1("/etc/panel-root"))) {
            std::fprintf(stderr, "FAILED: start this program through run_in_panel_root.sh\n");
            std::_Exit(1);
        }
        fakePlatform() = FakePlatform();
    }

    MessageLog log;
};

} // namespace

TEST_F(PanelRoot, FindsAStickThatIsMountedAtTheStartWithoutASignal) {
    MountPoint stick("/dev/sdz1", "/run/media/sdz1");
    ArmLinuxHmi hmi;
    StorageSignals told(hmi);
    hmi.checkGlobalMountStatus();
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/run/media/sdz1"));
    EXPECT_EQ(told.take(), QStringList());
    EXPECT_TRUE(QFileInfo(latin1("/usb")).isDir());
    EXPECT_TRUE(QFileInfo(latin1("/sd")).isDir());
}

TEST_F(PanelRoot, SeesSticksAndCardsComeAndGo) {
    ArmLinuxHmi hmi;
    StorageSignals told(hmi);
    hmi.checkGlobalMountStatus();
    auto first = std::make_unique<MountPoint>("/dev/sdz1", "/run/media/sdz1");
    MountPoint second("/dev/sdz2", "/run/media/sdz2");
    MountPoint card("/dev/mmcblk1p1", "/run/media/mmcblk1p1");
    MountPoint elsewhere("/dev/sdy1", "/media/elsewhere");
    hmi.processDeviceMountStatus();
    EXPECT_EQ(told.take(), QStringList() << latin1("mounted 1 0 true") << latin1("mounted 1 0 true")
                                         << latin1("mounted 2 0 true"));
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/run/media/sdz1")) << "detected first";
    EXPECT_EQ(hmi.getMount(DEVICE_SD), latin1("/run/media/mmcblk1p1"));
    EXPECT_EQ(hmi.mounted(latin1("/dev/sdz2")), latin1("/run/media/sdz2"));

    first.reset();
    hmi.processDeviceMountStatus();
    EXPECT_EQ(told.take(), QStringList(latin1("mounted 1 0 false")));
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/run/media/sdz2"));
}

TEST_F(PanelRoot, RecordsTypeNoneForADirectoryThatTellsNone) {
    MountPoint stick("/dev/sdz1", "/run/media/BACKUP");
    ArmLinuxHmi hmi;
    StorageSignals told(hmi);
    hmi.processDeviceMountStatus();
    EXPECT_EQ(told.take(), QStringList(latin1("mounted 0 0 true")));
    EXPECT_EQ(hmi.getMount(DEVICE_NONE), latin1("/run/media/BACKUP"));
}

TEST_F(PanelRoot, MeasuresRealFileSystems) {
    MountPoint stick("/dev/sdz1", "/run/media/sdz1", "size=64k");
    ArmLinuxHmi hmi;
    hmi.checkGlobalMountStatus();
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_USB), 64u * 1024);
    EXPECT_EQ(hmi.getFreeSpace(DEVICE_USB), 64u * 1024);
    EXPECT_GT(hmi.getTotalSpace(DEVICE_ROOT), hmi.getFreeSpace(DEVICE_ROOT));
    QFile file(latin1("/run/media/sdz1/file"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(QByteArray(4096, 'x')), 4096);
    file.close();
    hmi.processDeviceSpaceStatus();
    EXPECT_LT(hmi.getFreeSpace(DEVICE_USB), 64u * 1024);
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_USB), 64u * 1024);
}

TEST_F(PanelRoot, UnmountsItsDevicesAtItsEnd) {
    MountPoint stick("/dev/sdz1", "/run/media/sdz1");
    MountPoint card("/dev/mmcblk1p1", "/run/media/mmcblk1p1");
    {
        ArmLinuxHmi hmi;
        hmi.checkGlobalMountStatus();
        EXPECT_TRUE(stick.isMounted());
    }
    EXPECT_FALSE(stick.isMounted());
    EXPECT_FALSE(card.isMounted());
}

TEST_F(PanelRoot, IsNotHarmedByBlanksAndShellCharactersInADirectoryName) {
    MountPoint stick("/dev/sdz1", "/run/media/sd $(cat >pwned); cat >pwned; `cat >pwned` '\" & |x");
    ArmLinuxHmi hmi;
    hmi.checkGlobalMountStatus();
    hmi.processDeviceMountStatus();
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/run/media/sd")) << "up to the blank";
    hmi.processDeviceMountStatus();
    EXPECT_TRUE(stick.isMounted());
    EXPECT_FALSE(QFile::exists(latin1("pwned")));
}

TEST_F(PanelRoot, SurvivesAFullTemporaryFolder) {
    MountPoint stick("/dev/sdz1", "/run/media/sdz1");
    MountPoint full("tmpfs", "/tmp", "size=4k");
    QFile filler(latin1("/tmp/filler"));
    ASSERT_TRUE(filler.open(QIODevice::WriteOnly));
    ASSERT_EQ(filler.write(QByteArray(4096, 'x')), 4096);
    filler.close();
    ArmLinuxHmi hmi;
    hmi.checkGlobalMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), QString()) << "the listing could not be written";
    ASSERT_TRUE(filler.remove());
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/run/media/sdz1"));
}

TEST_F(PanelRoot, SeesSticksOfASimulator) {
    fakePlatform().x86_hmi = true;
    MountPoint second("/dev/sdz2", "/media/usb1", "size=32k");
    MountPoint first("/dev/sdz1", "/media/usb0", "size=64k");
    X86LinuxHmi hmi;
    hmi.processDeviceMountStatus();
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/media/usb0"));
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_USB), 64u * 1024);
    EXPECT_EQ(hmi.getFreeSpace(DEVICE_USB), 64u * 1024);
}

TEST_F(PanelRoot, AnswersFromAnyThreadWhileSticksComeAndGo) {
    ArmLinuxHmi hmi;
    SimulatedClock clock; // the monitor's seconds take no time
    KDevice device(&hmi, clock);
    device.start(QThread::LowestPriority);
    // Between the end of a mount and that of its directory, the directory is one
    // of the root's.
    struct statvfs root = {};
    ASSERT_EQ(statvfs("/", &root), 0);
    const std::set<quint64> totals = {0, 64u * 1024, quint64(root.f_bsize) * root.f_blocks};
    std::atomic<bool> ready{false};
    std::vector<std::thread> callers;
    for (int i = 0; i < 2; ++i) {
        callers.emplace_back([&] {
            while (!ready) {
                const QString path = device.getMount(DEVICE_USB);
                EXPECT_TRUE(path.isEmpty() || path == latin1("/run/media/sdz1"));
                const quint64 total = device.getTotalSpace(DEVICE_USB);
                EXPECT_EQ(totals.count(total), 1u) << total;
                std::this_thread::yield();
            }
        });
    }
    for (int round = 0; round < 5; ++round) {
        MountPoint stick("/dev/sdz1", "/run/media/sdz1", "size=64k");
        while (device.getTotalSpace(DEVICE_USB) == 0)
            std::this_thread::yield();
        stick.takeAway();
        while (!device.getMount(DEVICE_USB).isEmpty())
            std::this_thread::yield();
    }
    ready = true;
    for (std::thread& caller : callers)
        caller.join();
}

TEST_F(PanelRoot, ReportsASettingThatDoesNotFitOnAFullDisk) {
    MountPoint flash("/dev/mmcblk0p3", "/halvoric/configs", "size=4k");
    QFile filler(latin1("/halvoric/configs/filler"));
    ASSERT_TRUE(filler.open(QIODevice::WriteOnly));
    ASSERT_EQ(filler.write(QByteArray(4096, 'x')), 4096);
    filler.close();
    {
        KSetting setting;
        EXPECT_FALSE(setting.setSettingValue(7, 8));
        EXPECT_TRUE(log.contains("!!!FATAL WRITE TO SAVE FAILED!!!("));
        EXPECT_EQ(setting.getSettingValue(7), 8);
    }
    EXPECT_EQ(KSetting().getSettingValue(7), 0) << "the empty file is ignored";
    ASSERT_TRUE(filler.remove());
    EXPECT_TRUE(KSetting().setSettingValue(7, 9));
    EXPECT_EQ(KSetting().getSettingValue(7), 9);
}

TEST_F(PanelRoot, HoldsAllServicesOnTheirTruePaths) {
    KSetting* const setting = KSetting::getInstance();
    EXPECT_TRUE(setting->setSettingValue(12, 1));
    EXPECT_EQ(contentOf("/halvoric/configs/savedFram"),
              QByteArray(24, '\0') + QByteArray("\x01\0", 2) + QByteArray(174, '\0'));
    setting->manualSave();
    EXPECT_EQ(contentOf("/dev/fram"), QByteArray("\0\0\x01\0", 4) + QByteArray(24, '\0') +
                                          QByteArray("\x01\0", 2) + QByteArray(174, '\0'));

    KBuzzer::getInstance()->makeSound(AbstractBuzzerInterface::SOUND_CLICK);
    while (contentOf("/dev/input/event1").size() < 3 * 16)
        std::this_thread::yield();
    EXPECT_EQ(contentOf("/dev/input/event1").mid(24, 8), QByteArray("\x12\0\x02\0\x54\x0B\0\0", 8));

    MountPoint stick("/dev/sdz1", "/run/media/sdz1");
    KDevice* const device = KDevice::getInstance();
    EXPECT_EQ(KDevice::getInstance(), device);
    EXPECT_TRUE(device->isRunning());
    EXPECT_EQ(device->priority(), QThread::LowestPriority);
    EXPECT_EQ(qApp->property("KDevice").value<void*>(), static_cast<void*>(device));
    EXPECT_EQ(device->getMount(DEVICE_USB), latin1("/run/media/sdz1"));
    KDevice::dropInstance();
    EXPECT_FALSE(device->isRunning());
    EXPECT_EQ(KDevice::getInstance(), device) << "stopped, but still the process's";
    EXPECT_EQ(device->getMount(DEVICE_USB), QString());
    EXPECT_TRUE(stick.isMounted()) << "the platform was left alive";
    KSetting::drop();
}
