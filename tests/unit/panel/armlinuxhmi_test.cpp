#include "runtime/panel/armlinuxhmi.h"

#include "runtime/panel/panelpaths.h"
#include "tests/unit/panel/armstoragefixture.h"

#include <QDir>
#include <QFileInfo>

#include <random>

namespace {

QString latin1(const char* text) {
    return QString::fromLatin1(text);
}

QStringList list(const char* texts) {
    return latin1(texts).split(QLatin1Char('|'));
}

class ArmStorage : public ArmStorageFixture {};

} // namespace

TEST_F(ArmStorage, MakesThePanelsMountDirectories) {
    EXPECT_EQ(system.commands, QStringList() << latin1("mkdir ") + panelPaths().sd_folder
                                             << latin1("mkdir ") + panelPaths().usb_folder);
    EXPECT_TRUE(QFileInfo(panelPaths().sd_folder).isDir());
    EXPECT_TRUE(QFileInfo(panelPaths().usb_folder).isDir());
}

TEST_F(ArmStorage, TellsTheTypeByTheName) {
    EXPECT_EQ(hmi.determineType(latin1("/dev/sda1")), 1);
    EXPECT_EQ(hmi.determineType(latin1("/dev/mmcblk1p1")), 2);
    EXPECT_EQ(hmi.determineType(latin1("/mmcblk1/sd")), 1) << "sd comes first";
    EXPECT_EQ(hmi.determineType(latin1("/dev/mmcblk0p1")), 0);
    EXPECT_EQ(hmi.determineType(latin1("/dev/SDA1")), 0);
    EXPECT_EQ(hmi.determineType(QString()), 0);
}

TEST_F(ArmStorage, NamesTheMountDirectoryOfAType) {
    EXPECT_EQ(hmi.determineMountPath(DEVICE_USB), panelPaths().usb_folder);
    EXPECT_EQ(hmi.determineMountPath(DEVICE_SD), panelPaths().sd_folder);
    EXPECT_EQ(hmi.determineMountPath(DEVICE_ROOT), QString());
    EXPECT_EQ(hmi.determineMountPath(DEVICE_NONE), QString());
}

TEST_F(ArmStorage, HasNothingWithoutDevices) {
    mount.setRecordedTable("mount_panel.txt");
    hmi.checkGlobalMountStatus();
    hmi.processDeviceMountStatus();
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), QString());
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_USB), 0u);
    EXPECT_EQ(hmi.getFreeSpace(DEVICE_SD), 0u);
    EXPECT_EQ(told.take(), QStringList());
}

TEST_F(ArmStorage, RunsItsCommandsThroughAShellInAShell) {
    system.commands.clear();
    hmi.checkGlobalMountStatus();
    hmi.processDeviceMountStatus();
    hmi.mounted(latin1("/dev/sda1"));
    EXPECT_EQ(system.commands, latin1("sh -c mount > %1|sh -c mount # grep '/run/media' > %1|"
                                      "sh -c mount # grep /dev/sda1 > %1")
                                   .arg(panelPaths().mount_listing)
                                   .split(QLatin1Char('|'))
                                   .replaceInStrings(latin1("#"), latin1("|")));
}

TEST_F(ArmStorage, FindsDevicesMountedBeforeTheStartWithoutTelling) {
    mount.setRecordedTable("mount_stick_and_card.txt");
    hmi.checkGlobalMountStatus();
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/run/media/sda1"));
    EXPECT_EQ(hmi.getMount(DEVICE_SD), latin1("/run/media/mmcblk1p1"));
    EXPECT_EQ(told.take(), QStringList());
    EXPECT_TRUE(log.contains("Found:"));
    EXPECT_TRUE(log.contains(
        " ********************************************************** addDevice  /dev/sda1"));
}

TEST_F(ArmStorage, TellsDevicesThatComeLater) {
    mount.setRecordedTable("mount_panel.txt");
    hmi.checkGlobalMountStatus();
    mount.setRecordedTable("mount_stick_and_card.txt");
    hmi.processDeviceMountStatus();
    EXPECT_EQ(told.take(), list("mounted 1 0 true|mounted 1 0 true|mounted 2 0 true"));
    EXPECT_TRUE(log.contains("******************************************************** DETECT: "
                             "\"/dev/sda1\" \"/run/media/sda1\" 1"));
    hmi.processDeviceMountStatus();
    EXPECT_EQ(told.take(), QStringList()) << "only once";
}

TEST_F(ArmStorage, AnswersTheFirstOfTwoPartitions) {
    mount.setTable("/dev/sdb2 on /run/media/sdb2 type vfat (rw)\n"
                   "/dev/sdb1 on /run/media/sdb1 type vfat (rw)\n");
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/run/media/sdb2"));
    system.vanished << latin1("/run/media/sdb2");
    mount.setTable("/dev/sdb1 on /run/media/sdb1 type vfat (rw)\n");
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/run/media/sdb1"));
}

TEST_F(ArmStorage, ForgetsAndUnmountsADeviceWhoseDirectoryHasVanished) {
    mount.setRecordedTable("mount_stick_and_card.txt");
    hmi.processDeviceMountStatus();
    told.take();
    system.vanished << latin1("/run/media/sda1") << latin1("/run/media/mmcblk1p1");
    mount.setRecordedTable("mount_panel.txt");
    hmi.processDeviceMountStatus();
    EXPECT_EQ(told.take(), list("mounted 1 0 false|mounted 2 0 false"));
    EXPECT_EQ(system.unmounted, list("/run/media/sda1|/run/media/mmcblk1p1"));
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/run/media/sda2"));
    EXPECT_EQ(hmi.getMount(DEVICE_SD), QString());
    EXPECT_TRUE(log.contains("REMOVE: \"/dev/sda1\" \"/run/media/sda1\""));
}

TEST_F(ArmStorage, KeepsADeviceWhoseDirectoryRemainsAfterItsMountHasGone) {
    mount.setRecordedTable("mount_stick_and_card.txt");
    hmi.processDeviceMountStatus();
    mount.setRecordedTable("mount_panel.txt");
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/run/media/sda1"));
}

TEST_F(ArmStorage, GivesTypeNoneToADirectoryThatTellsNone) {
    mount.setTable("/dev/sdb1 on /run/media/BACKUP type vfat (rw)\n");
    hmi.processDeviceMountStatus();
    EXPECT_EQ(told.take(), list("mounted 0 0 true"));
    EXPECT_EQ(hmi.getMount(DEVICE_NONE), latin1("/run/media/BACKUP"));
    EXPECT_EQ(hmi.getMount(DEVICE_USB), QString());
}

TEST_F(ArmStorage, TakesTheTypeFromTheNodeAtTheStart) {
    mount.setTable("/dev/sdb1 on /run/media/BACKUP type vfat (rw)\n");
    hmi.checkGlobalMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/run/media/BACKUP"));
}

TEST_F(ArmStorage, SurvivesOddLinesOfTheMountTable) {
    mount.setRecordedTable("mount_odd_lines.txt");
    hmi.checkGlobalMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/run/media/BACKUP"));
    EXPECT_EQ(hmi.getMount(DEVICE_SD), latin1("/run/media/mmcblk1"));
    hmi.processDeviceMountStatus();
    EXPECT_EQ(told.take(), list("mounted 1 0 true")) << "the second pass does not ask for \"on\"";
}

TEST_F(ArmStorage, PassesOverLinesWithoutADirectory) {
    mount.setTable("/dev/sda1 /run/media/sda1\n/dev/sdb1 on\n");
    hmi.checkGlobalMountStatus();
    hmi.processDeviceMountStatus();
    EXPECT_EQ(told.take(), QStringList());
    EXPECT_EQ(hmi.getMount(DEVICE_USB), QString());
    EXPECT_EQ(hmi.mounted(latin1("/dev/sdb1")), QString());
}

TEST_F(ArmStorage, NeverRunsWhatStandsInAMountTable) {
    const QString previous = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(directory.path()));
    mount.setRecordedTable("mount_odd_lines.txt");
    hmi.checkGlobalMountStatus();
    hmi.processDeviceMountStatus();
    system.vanished << latin1("/run/media/sd");
    hmi.processDeviceMountStatus();
    EXPECT_EQ(system.unmounted, list("/run/media/sd"));
    hmi.mounted(latin1("/dev/sda1; touch pwned"));
    hmi.mounted(latin1("$(touch${IFS}pwned)"));
    EXPECT_TRUE(QDir::setCurrent(previous));
    EXPECT_FALSE(directory.contains(latin1("pwned")));
}

TEST_F(ArmStorage, SeesADirectoryWithABlankComeAndGoAtEveryPass) {
    mount.setTable("/dev/sdb1 on /run/media/sd card type vfat (rw)\n");
    system.vanished << latin1("/run/media/sd"); // the name ends at the blank
    hmi.processDeviceMountStatus();
    hmi.processDeviceMountStatus();
    EXPECT_EQ(told.take(), list("mounted 1 0 true|mounted 1 0 false|mounted 1 0 true"));
}

TEST_F(ArmStorage, SurvivesRandomMountTables) {
    const char* const words[] = {"/dev/sda1", "on", "/run/media", "/run/media/sda1",
                                 " ",         "\n", "mmcblk1"};
    std::mt19937 random(20240229);
    for (int round = 0; round < 60; ++round) {
        QByteArray table;
        while (table.size() < 4000) {
            table += random() % 2 ? QByteArray(words[random() % 7]) : QByteArray(1, char(random()));
            table += random() % 3 ? " " : "";
        }
        mount.setTable(table);
        hmi.checkGlobalMountStatus();
        hmi.processDeviceMountStatus();
        const QString first = hmi.getMount(DEVICE_USB);
        EXPECT_TRUE(QString::fromLocal8Bit(table).contains(first)) << round;
        hmi.testRemove();
    }
}

TEST_F(ArmStorage, FindsNothingWithoutAScratchFile) {
    mount.setRecordedTable("mount_stick_and_card.txt");
    ASSERT_TRUE(QDir().mkpath(panelPaths().mount_listing)); // a folder is in the way
    hmi.checkGlobalMountStatus();
    hmi.processDeviceMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), QString());
    EXPECT_EQ(hmi.mounted(latin1("/dev/sda1")), QString());
}

TEST_F(ArmStorage, ReadsAtMostAMebibyteOfAMountTable) {
    mount.setTable(QByteArray(1024 * 1024, ' ') + "\n/dev/sda1 on /run/media/sda1 type vfat\n");
    hmi.checkGlobalMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), QString());
}

TEST_F(ArmStorage, AsksMountWhereANodeIs) {
    mount.setRecordedTable("mount_stick_and_card.txt");
    EXPECT_EQ(hmi.mounted(latin1("/dev/sda2")), latin1("/run/media/sda2"));
    EXPECT_TRUE(log.contains(" ArmLinuxHmi::mounted "));
    EXPECT_EQ(hmi.mounted(latin1("/dev/sda")), QString()) << "the first line's node is another";
    EXPECT_EQ(hmi.mounted(latin1("/dev/sdb1")), QString());
    EXPECT_EQ(hmi.mounted(QString()), QString());
}

TEST_F(ArmStorage, MeasuresDevicesAndItsOwnFileSystemIn64Bits) {
    const quint64 blocks = quint64(1) << 30; // 4 TiB
    mount.setRecordedTable("mount_stick_and_card.txt");
    hmi.checkGlobalMountStatus();
    system.file_systems[latin1("/")] = fileSystemOf(blocks);
    system.file_systems[latin1("/run/media/sda1")] = fileSystemOf(1000);
    system.file_systems[latin1("/run/media/sda2")] = fileSystemOf(2000);
    system.file_systems[latin1("/run/media/mmcblk1p1")] = fileSystemOf(3000);
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_ROOT), 0u) << "not measured yet";
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_USB), 4096u * 1000);
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_SD), 4096u * 3000);
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_ROOT), 4096 * blocks);
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_NONE), 0u);
}

TEST_F(ArmStorage, CountsAllFreeBlocksOfADeviceButOnlyEverybodysOfItsOwn) {
    mount.setRecordedTable("mount_stick_and_card.txt");
    hmi.checkGlobalMountStatus();
    system.file_systems[latin1("/")] = fileSystemOf(8000);
    system.file_systems[latin1("/run/media/sda1")] = fileSystemOf(1000);
    system.file_systems[latin1("/run/media/sda2")] = fileSystemOf(2000);
    system.file_systems[latin1("/run/media/mmcblk1p1")] = fileSystemOf(3000);
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getFreeSpace(DEVICE_USB), 4096u * 500);
    EXPECT_EQ(hmi.getFreeSpace(DEVICE_SD), 4096u * 1500);
    EXPECT_EQ(hmi.getFreeSpace(DEVICE_ROOT), 4096u * 2000);
    EXPECT_EQ(hmi.getFreeSpace(DEVICE_NONE), 0u);
}

TEST_F(ArmStorage, HasNoFreeSpaceOnACardThatIsNotAPartition) {
    mount.setTable("/dev/mmcblk1 on /run/media/mmcblk1 type vfat (rw)\n");
    hmi.checkGlobalMountStatus();
    system.file_systems[latin1("/run/media/mmcblk1")] = fileSystemOf(3000);
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getFreeSpace(DEVICE_SD), 0u);
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_SD), 4096u * 3000);
}

TEST_F(ArmStorage, HasNoFreeSpaceForTypeNoneThoughItsTotalIsKnown) {
    mount.setTable("/dev/sdb1 on /run/media/BACKUP type vfat (rw)\n");
    hmi.processDeviceMountStatus();
    system.file_systems[latin1("/run/media/BACKUP")] = fileSystemOf(3000);
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_NONE), 4096u * 3000);
    EXPECT_EQ(hmi.getFreeSpace(DEVICE_NONE), 0u);
}

TEST_F(ArmStorage, HasNoSpaceAfterAFailedMeasurement) {
    mount.setRecordedTable("mount_stick_and_card.txt");
    hmi.checkGlobalMountStatus();
    system.file_systems[latin1("/run/media/sda1")] = fileSystemOf(1000);
    hmi.processDeviceSpaceStatus();
    EXPECT_GT(hmi.getTotalSpace(DEVICE_USB), 0u);
    system.file_systems.clear();
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_USB), 0u);
    EXPECT_EQ(hmi.getFreeSpace(DEVICE_USB), 0u);
    EXPECT_TRUE(log.contains("get file system info failed"));
}

TEST_F(ArmStorage, MeasuresOnlyRecordsThatAreComplete) {
    Device* const device = hmi.addDevice();
    device->type = DEVICE_USB;
    device->mountPath = latin1("/somewhere");
    system.file_systems[latin1("/somewhere")] = fileSystemOf(1000);
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_USB), 0u);
    device->state = Device::Mounted;
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_USB), 4096u * 1000);
}

TEST_F(ArmStorage, ForgetsASizeOfItsOwnThatCannotBeMeasured) {
    system.file_systems[latin1("/")] = fileSystemOf(1000);
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_ROOT), 4096u * 1000);
    system.file_systems.clear();
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_ROOT), 0u);
    EXPECT_EQ(hmi.getFreeSpace(DEVICE_ROOT), 0u);
}

TEST_F(ArmStorage, LooksUpAndUnmountsNamesOutsideAscii) {
    mount.setTable("/dev/sdb1 on /run/media/sd\xc3\xa9 type vfat (rw)\n");
    hmi.checkGlobalMountStatus();
    system.file_systems[QString::fromUtf8("/run/media/sd\xc3\xa9")] = fileSystemOf(1000);
    hmi.processDeviceSpaceStatus();
    EXPECT_EQ(hmi.getTotalSpace(DEVICE_USB), 4096u * 1000);
    hmi.testRemove();
    EXPECT_EQ(system.unmounted, QStringList(QString::fromUtf8("/run/media/sd\xc3\xa9")));
}

TEST_F(ArmStorage, ReadsTheLastByteOfAMebibyteOfAMountTable) {
    const QByteArray line = "/dev/sda1 on /run/media/sda1";
    mount.setTable(QByteArray(1024 * 1024 - line.size() - 1, ' ') + '\n' + line + "x type vfat\n");
    hmi.checkGlobalMountStatus();
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/run/media/sda1")) << "but no byte more";
}

TEST(StorageSystem, TellsWhetherADirectoryExistsAndHowLargeItsFileSystemIs) {
    const TemporaryDirectory directory;
    StorageSystem& system = StorageSystem::real();
    const QByteArray missing = (directory.path() + latin1("/missing")).toLocal8Bit();
    EXPECT_TRUE(system.exists(directory.path().toLocal8Bit()));
    EXPECT_FALSE(system.exists(missing));
    struct statvfs info = {};
    EXPECT_TRUE(system.measure(directory.path().toLocal8Bit(), info));
    EXPECT_GT(info.f_bsize, 0u);
    EXPECT_FALSE(system.measure(missing, info));
    EXPECT_EQ(info.f_bsize, 0u);
    EXPECT_EQ(&StorageSystem::real(), &system);
}

TEST(StorageSystem, ReadsWhatAProgramPrints) {
    const FakeMount mount;
    QByteArray output("earlier");
    EXPECT_TRUE(StorageSystem::real().readProgram(latin1("true"), 30000, output));
    EXPECT_EQ(output, QByteArray());
    EXPECT_TRUE(StorageSystem::real().readProgram(latin1("pwd"), 30000, output));
    EXPECT_EQ(output.trimmed(), QDir::currentPath().toLocal8Bit());
    EXPECT_FALSE(StorageSystem::real().readProgram(latin1("/no/such/program"), 30000, output));
    EXPECT_EQ(output, QByteArray());
}

TEST(StorageSystem, GivesUpOnAProgramThatDoesNotEnd) {
    QByteArray output("earlier");
    // It waits for input that never comes.
    EXPECT_FALSE(StorageSystem::real().readProgram(latin1("cat"), 100, output));
    EXPECT_EQ(output, QByteArray());
}

TEST_F(ArmStorage, RemovesAllFromTheLastToTheFirstWithoutTelling) {
    mount.setRecordedTable("mount_stick_and_card.txt");
    hmi.checkGlobalMountStatus();
    hmi.testRemove();
    EXPECT_EQ(system.unmounted, list("/run/media/mmcblk1p1|/run/media/sda2|/run/media/sda1"));
    EXPECT_EQ(told.take(), QStringList());
    EXPECT_EQ(hmi.getMount(DEVICE_USB), QString());
}

TEST_F(ArmStorage, UnmountsAllAtItsEnd) {
    mount.setRecordedTable("mount_stick_and_card.txt");
    {
        ArmLinuxHmi other(system);
        other.checkGlobalMountStatus();
    }
    EXPECT_EQ(system.unmounted, list("/run/media/mmcblk1p1|/run/media/sda2|/run/media/sda1"));
}

TEST_F(ArmStorage, AddsAnEmptyRecordAndRemovesItAgain) {
    Device* const device = hmi.addDevice();
    EXPECT_EQ(device->type, 0);
    EXPECT_EQ(device->lastIOCount, 0u);
    EXPECT_FALSE(device->inIO);
    EXPECT_EQ(device->fsInfo.f_blocks, 0u);
    device->type = DEVICE_USB;
    device->mountPath = latin1("/somewhere");
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/somewhere"));
    hmi.removeDevice(device);
    EXPECT_EQ(told.take(), list("mounted 1 0 false"));
    EXPECT_EQ(system.unmounted, list("/somewhere"));
    EXPECT_EQ(hmi.getMount(DEVICE_USB), QString());
}

TEST_F(ArmStorage, RunsPrograms) {
    EXPECT_EQ(hmi.runCommand(latin1("sh"), list("-c|exit 3")), 3);
    EXPECT_TRUE(hmi.runCommandDetached(latin1("true"), QStringList()));
    EXPECT_FALSE(hmi.runCommandDetached(latin1("/no/such/program"), QStringList()));
}
