#include "runtime/panel/x86linuxhmi.h"

#include "tests/support/fakemount.h"
#include "tests/support/messagelog.h"
#include "tests/support/storagesignals.h"
#include "tests/unit/panel/recordingstorage.h"

#include <gtest/gtest.h>

namespace {

QString latin1(const char* text) {
    return QString::fromLatin1(text);
}

const char* const TwoSticks = "/dev/sdc1 on /media/usb1 type vfat (rw)\n"
                              "/dev/sdb1 on /media/usb0 type vfat (rw)\n";

class X86Storage : public ::testing::Test {
protected:
    FakeMount mount;
    MessageLog log;
    RecordingStorage system;
    X86LinuxHmi hmi{system};
    StorageSignals told{hmi};
};

} // namespace

TEST_F(X86Storage, LogsItsMaking) {
    EXPECT_EQ(log.messages().value(0).trimmed(), latin1("XLH"));
}

TEST_F(X86Storage, AnswersTheFirstMountDirectoryInAlphabeticalOrder) {
    mount.setTable(TwoSticks);
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/media/usb0"));
    EXPECT_EQ(hmi.getMount(DEVICE_SD), QString());
    EXPECT_EQ(hmi.getMount(DEVICE_ROOT), QString());
}

TEST_F(X86Storage, TellsTheFirstStickThatComesAndTheLastThatGoes) {
    const QStringList up(latin1("mounted 1 0 true"));
    const QStringList down(latin1("mounted 1 0 false"));
    hmi.processDeviceMountStatus();
    EXPECT_EQ(told.take(), QStringList());
    mount.setTable("/dev/sdb1 on /media/usb0 type vfat (rw)\n");
    hmi.processDeviceMountStatus();
    EXPECT_EQ(told.take(), up);
    mount.setTable(TwoSticks);
    hmi.processDeviceMountStatus();
    EXPECT_EQ(told.take(), QStringList()) << "a second stick is not told";
    mount.setTable(QByteArray());
    hmi.processDeviceMountStatus();
    EXPECT_EQ(told.take(), down);
    EXPECT_EQ(hmi.getMount(DEVICE_USB), QString());
}

TEST_F(X86Storage, MeasuresTheFirstStickForEveryType) {
    system.file_systems[latin1("/media/usb0")] = fileSystemOf(1000);
    system.file_systems[latin1("/media/usb1")] = fileSystemOf(2000);
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_USB), 0u);
    mount.setTable(TwoSticks);
    hmi.processDeviceMountStatus();
    hmi.processDeviceSpaceStatus();
    for (DeviceType type : {DEVICE_NONE, DEVICE_USB, DEVICE_SD, DEVICE_ROOT}) {
        EXPECT_EQ(hmi.getTotalSpace(type), 4096u * 1000);
        EXPECT_EQ(hmi.getFreeSpace(type), 4096u * 500);
    }
    mount.setTable(QByteArray());
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_USB), 0u);
    EXPECT_EQ(hmi.getFreeSpace(DEVICE_USB), 0u);
}

TEST_F(X86Storage, HasNoSpaceAfterAFailedMeasurement) {
    mount.setTable(TwoSticks);
    hmi.processDeviceMountStatus();
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_USB), 0u);
    EXPECT_TRUE(log.contains("get file system info failed"));
}

TEST_F(X86Storage, SurvivesOddLines) {
    mount.setTable("/dev/sdb1 on\n\n   \n/dev/sdb1 on /media/us\n\xff\xfe \xff /media/usb\xe9 x\n");
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/media/usb\xe9")) << "bytes are Latin-1";
}

TEST_F(X86Storage, TakesOnlyDirectoriesThatBeginAsItsSticksDo) {
    mount.setTable("/dev/sdb1 on /mnt/media/usb0 type vfat (rw)\n"
                   "/dev/sdc1 on /media/us type vfat (rw)\n"
                   "/dev/sdd1 on /media/USB0 type vfat (rw)\n"
                   "/media/usb0 on /media/sde type vfat (rw)\n");
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), QString());
    mount.setTable("/dev/sdb1 on /media/usb\n"); // three parts are enough
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/media/usb"));
    EXPECT_EQ(told.take(), QStringList(latin1("mounted 1 0 true")));
}

TEST_F(X86Storage, GivesMountHalfAMinute) {
    hmi.processDeviceMountStatus();
    EXPECT_EQ(system.programs, QStringList(latin1("mount within 30000 ms")));
}

TEST_F(X86Storage, RemembersTheSticksThatItToldWhileMountCannotRun) {
    mount.setTable(TwoSticks);
    hmi.processDeviceMountStatus();
    {
        FakeMount none;
        none.remove();
        hmi.processDeviceMountStatus();
    }
    told.take();
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/media/usb0"));
    EXPECT_EQ(told.take(), QStringList()) << "it never was told to have gone";
}

TEST_F(X86Storage, KeepsTheLastMeasurementWhileNoStickIsThere) {
    system.file_systems[latin1("/media/usb0")] = fileSystemOf(1000);
    mount.setTable(TwoSticks);
    hmi.processDeviceMountStatus();
    hmi.processDeviceSpaceStatus();
    mount.setTable(QByteArray());
    hmi.processDeviceMountStatus();
    hmi.processDeviceSpaceStatus();
    EXPECT_FALSE(log.contains("get file system info failed")) << "nothing to measure";
    mount.setTable(TwoSticks);
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_USB), 4096u * 1000);
}

TEST_F(X86Storage, ForgetsTheSticksButTellsNothingWhenMountCannotRun) {
    mount.setTable(TwoSticks);
    hmi.processDeviceMountStatus();
    told.take();
    mount.remove();
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), QString());
    EXPECT_EQ(told.take(), QStringList());
}

TEST_F(X86Storage, HasNoInitialScanAndNoActivity) {
    mount.setTable(TwoSticks);
    hmi.checkGlobalMountStatus();
    hmi.processIOStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), QString());
    EXPECT_EQ(told.take(), QStringList());
}
