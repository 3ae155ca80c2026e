#include "runtime/panel/ksetting.h"
#include "runtime/panel/panelpaths.h"
#include "tests/support/limitedfilesize.h"
#include "tests/support/messagelog.h"
#include "tests/support/scopedpanelpaths.h"
#include "tests/support/temporarydirectory.h"
#include "tests/unit/panel/recordingfram.h"
#include "tests/unit/panel/signalcounter.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimer>
#include <QTimerEvent>

#include <gtest/gtest.h>

#include <cstdlib>
#include <unistd.h>

namespace {

class Settings : public ::testing::Test {
protected:
    QString savePath() const { return panelPaths().saved_settings; }

    QByteArray saved() const {
        QFile file(savePath());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    void save(const QByteArray& content) const {
        QDir().mkpath(QFileInfo(savePath()).path());
        QFile file(savePath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(file.write(content), content.size());
    }

    TemporaryDirectory directory;
    ScopedPanelPaths paths{directory.path()};
    MessageLog log;
    RecordingFram fram;
};

/** The timer's time is over, without waiting for it. */
void expire(QTimer* timer) {
    QTimerEvent event(timer->timerId());
    QCoreApplication::sendEvent(timer, &event);
}

QTimer* saveTimerOf(const KSetting& setting) {
    QTimer* timer = setting.findChild<QTimer*>();
    EXPECT_NE(timer, nullptr);
    return timer;
}

QByteArray tableWith(int field, quint16 value) {
    QByteArray table(200, '\0');
    memcpy(table.data() + 2 * field, &value, sizeof value);
    return table;
}

} // namespace

TEST_F(Settings, StartAsZerosWithoutASaveFile) {
    KSetting setting(fram);
    for (int field = 0; field < 100; ++field)
        EXPECT_EQ(setting.getSettingValue(field), 0) << field;
    EXPECT_FALSE(log.contains("fd.exists()!"));
}

TEST_F(Settings, AreLoadedFromASaveFileOf200Bytes) {
    save(tableWith(12, 65535));
    KSetting setting(fram);
    EXPECT_EQ(setting.getSettingValue(12), 65535);
    EXPECT_EQ(setting.getSettingValue(13), 0);
    EXPECT_TRUE(log.contains("fd.exists()!"));
    EXPECT_TRUE(fram.calls.isEmpty()) << "the FRAM is never read back at start";
}

TEST_F(Settings, IgnoreASaveFileOfAnyOtherSize) {
    for (int size : {0, 1, 199, 201, 100000}) {
        save(QByteArray(size, '\x55'));
        KSetting setting(fram);
        EXPECT_EQ(setting.getSettingValue(0), 0) << size;
        EXPECT_EQ(setting.getSettingValue(99), 0) << size;
    }
}

TEST_F(Settings, OutsideZeroTo99HaveNoValueAndAreNotWritten) {
    KSetting setting(fram);
    for (int field : {100, -1, 65536, -65536}) {
        EXPECT_EQ(setting.getSettingValue(field), -1) << field;
        EXPECT_FALSE(setting.setSettingValue(field, 1)) << field;
    }
    EXPECT_FALSE(QFile::exists(savePath()));
    EXPECT_FALSE(saveTimerOf(setting)->isActive());
}

TEST_F(Settings, KeepTheLow16BitsOfAValue) {
    KSetting setting(fram);
    EXPECT_TRUE(setting.setSettingValue(5, 70000));
    EXPECT_EQ(setting.getSettingValue(5), 4464);
    EXPECT_TRUE(setting.setSettingValue(5, -1));
    EXPECT_EQ(setting.getSettingValue(5), 65535);
}

TEST_F(Settings, WriteTheWholeTableAtEveryChange) {
    KSetting setting(fram);
    EXPECT_TRUE(setting.setSettingValue(0, 1));
    EXPECT_EQ(saved(), tableWith(0, 1));
    EXPECT_TRUE(setting.setSettingValue(0, 0));
    EXPECT_TRUE(setting.setSettingValue(99, 0x1234));
    EXPECT_EQ(saved(), tableWith(99, 0x1234));
    EXPECT_EQ(KSetting(fram).getSettingValue(99), 0x1234);
}

TEST_F(Settings, LogEveryChangeAsItWasAskedFor) {
    KSetting setting(fram);
    setting.setSettingValue(5, 70000);
    EXPECT_TRUE(log.contains("field =  5 val =  70000"));
    setting.setSettingValue(100, -1);
    EXPECT_TRUE(log.contains("field =  100 val =  -1"));
}

TEST_F(Settings, RepairASaveFileThatIsTooLong) {
    save(QByteArray(300, '\x55'));
    EXPECT_TRUE(KSetting(fram).setSettingValue(1, 2));
    EXPECT_EQ(saved(), tableWith(1, 2));
}

TEST_F(Settings, ReportASaveFileThatCannotBeMade) {
    directory.write(QString::fromLatin1("halvoric"), "a file where the folder should be");
    KSetting setting(fram);
    EXPECT_FALSE(setting.setSettingValue(3, 4));
    EXPECT_TRUE(log.contains("Open file to save failed!!!"));
    EXPECT_EQ(setting.getSettingValue(3), 4) << "the value stays set in memory";
    EXPECT_FALSE(saveTimerOf(setting)->isActive());
}

TEST_F(Settings, ReportASaveFileOnAFullDisk) {
    QDir().mkpath(QFileInfo(savePath()).path());
    ASSERT_EQ(symlink("/dev/full", savePath().toLocal8Bit().constData()), 0);
    KSetting setting(fram);
    EXPECT_FALSE(setting.setSettingValue(3, 4));
    EXPECT_TRUE(log.contains("!!!FATAL WRITE TO SAVE FAILED!!!( -1"));
    EXPECT_EQ(setting.getSettingValue(3), 4);
    EXPECT_FALSE(saveTimerOf(setting)->isActive());
}

TEST_F(Settings, ReportHowMuchOfTheTableWentIntoAFileThatCouldNotTakeAll) {
    KSetting setting(fram);
    const LimitedFileSize limit(120);
    EXPECT_FALSE(setting.setSettingValue(3, 4));
    EXPECT_TRUE(log.contains("!!!FATAL WRITE TO SAVE FAILED!!!( 120"));
    EXPECT_FALSE(saveTimerOf(setting)->isActive());
}

TEST_F(Settings, ReportASaveFileThatIsAFolder) {
    QDir().mkpath(savePath());
    KSetting setting(fram);
    EXPECT_FALSE(setting.setSettingValue(3, 4));
    EXPECT_TRUE(log.contains("!!!FATAL WRITE TO SAVE FAILED!!!( -1"));
}

TEST_F(Settings, ReachTheFramOneSecondAfterTheLastOfSeveralChanges) {
    KSetting setting(fram);
    QTimer* timer = saveTimerOf(setting);
    EXPECT_TRUE(setting.setSettingValue(1, 10));
    EXPECT_TRUE(timer->isActive());
    timer->start(700); // 300 ms have passed
    EXPECT_TRUE(setting.setSettingValue(2, 20));
    EXPECT_TRUE(timer->isActive());
    EXPECT_EQ(timer->interval(), 1000) << "the second change starts the second anew";
    EXPECT_TRUE(fram.calls.isEmpty());

    expire(timer);
    EXPECT_EQ(fram.writtenOffsets().count(QString::fromLatin1("2")), 1) << "one update";
    EXPECT_EQ(fram.image.mid(6, 4), QByteArray("\x0A\x00\x14\x00", 4));
    EXPECT_FALSE(timer->isActive());
}

TEST_F(Settings, WriteAll100ValuesAndTheChecksumInTheFirstFramUpdate) {
    save(QByteArray(200, '\xFF'));
    KSetting setting(fram);
    EXPECT_TRUE(setting.saveSetting());
    ASSERT_EQ(fram.writtenOffsets().size(), 101);
    for (int n = 0; n < 100; ++n)
        EXPECT_EQ(fram.writtenOffsets().at(n).toInt(), 4 + 2 * n);
    EXPECT_EQ(fram.writtenOffsets().last().toInt(), 2) << "the checksum follows the values";
    const QByteArray checksum("\x9C\xFF", 2); // 100 * 65535 modulo 65536 = 65436
    EXPECT_EQ(fram.image, QByteArray(2, '\xEE') + checksum + QByteArray(200, '\xFF'));
}

TEST_F(Settings, WriteOnlyChangedValuesAndTheChecksumInLaterFramUpdates) {
    KSetting setting(fram);
    EXPECT_TRUE(setting.saveSetting());
    fram.calls.clear();
    EXPECT_TRUE(setting.setSettingValue(50, 0x0201));
    EXPECT_TRUE(setting.saveSetting());
    const QStringList update = QString::fromLatin1("open %1 w|ioctl 7 0x1001 1|pwrite 7 2@104|"
                                                   "ioctl 7 0x1001 0|close 7|"
                                                   "open %1 w|ioctl 7 0x1001 1|pwrite 7 2@2|"
                                                   "ioctl 7 0x1001 0|close 7")
                                   .arg(panelPaths().fram_device)
                                   .split(QLatin1Char('|'));
    EXPECT_EQ(fram.calls, update);
    EXPECT_EQ(fram.image.mid(104, 2), QByteArray("\x01\x02", 2));

    fram.calls.clear();
    EXPECT_TRUE(setting.saveSetting());
    EXPECT_EQ(fram.calls, update.mid(5)) << "the checksum is written also when nothing changed";
}

TEST_F(Settings, AreSavedByHandAtOnceAndOnlyOnce) {
    KSetting setting(fram);
    EXPECT_TRUE(setting.setSettingValue(0, 7));
    setting.manualSave();
    EXPECT_EQ(fram.image.mid(4, 2), QByteArray("\x07\x00", 2));
    EXPECT_FALSE(saveTimerOf(setting)->isActive());
}

TEST_F(Settings, LeaveTheDescriptorOpenAndTheChipUnprotectedAfterAShortFramWrite) {
    KSetting setting(fram);
    fram.short_by = 1;
    quint16 word = 0x1234;
    ::testing::internal::CaptureStdout();
    EXPECT_FALSE(setting.writeBuffer2FRAM(2, 2, &word));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "write fram proc failed\n");
    EXPECT_EQ(fram.calls, QString::fromLatin1("open %1 w|ioctl 7 0x1001 1|pwrite 7 2@2")
                              .arg(panelPaths().fram_device)
                              .split(QLatin1Char('|')));
}

TEST_F(Settings, AreNotWrittenAgainAfterAFailedFramWriteUntilTheyChange) {
    KSetting setting(fram);
    fram.short_by = 2;
    ::testing::internal::CaptureStdout();
    EXPECT_FALSE(setting.saveSetting());
    ::testing::internal::GetCapturedStdout();
    fram.short_by = 0;
    EXPECT_TRUE(setting.saveSetting());
    ASSERT_EQ(fram.writtenOffsets().size(), 102);
    EXPECT_EQ(fram.writtenOffsets().last().toInt(), 2) << "only the checksum is tried again";
}

TEST_F(Settings, ReportAMissingFramAndWorkOn) {
    KSetting setting; // the kernel's calls; there is no such device here
    EXPECT_TRUE(setting.setSettingValue(0, 7));
    ::testing::internal::CaptureStdout();
    EXPECT_FALSE(setting.writeFram());
    const std::string output = ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(output.find("open proc failed\n"), 0u);
    quint16 word = 0;
    ::testing::internal::CaptureStdout();
    EXPECT_FALSE(setting.readFRAM2Buffer(2, 2, &word));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "open proc failed!\n");
    EXPECT_EQ(setting.getSettingValue(0), 7);
}

TEST_F(Settings, TakeDescriptorZeroForAFailedFram) {
    fram.descriptor = 0;
    KSetting setting(fram);
    quint16 word = 0;
    ::testing::internal::CaptureStdout();
    EXPECT_FALSE(setting.writeBuffer2FRAM(2, 2, &word));
    EXPECT_FALSE(setting.readFRAM2Buffer(2, 2, &word));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "open proc failed\nopen proc failed!\n");
    EXPECT_EQ(fram.calls.size(), 2) << "nothing but the two attempts to open";
}

TEST_F(Settings, TakeDescriptorOneAsAnyOther) {
    fram.descriptor = 1;
    KSetting setting(fram);
    quint16 word = 0;
    EXPECT_TRUE(setting.writeBuffer2FRAM(2, 2, &word));
    EXPECT_TRUE(setting.readFRAM2Buffer(2, 2, &word));
}

TEST_F(Settings, ReadBytesBackFromTheFram) {
    fram.image.replace(10, 4, "abcd");
    KSetting setting(fram);
    char bytes[4] = {};
    EXPECT_TRUE(setting.readFRAM2Buffer(10, 4, bytes));
    EXPECT_EQ(QByteArray(bytes, 4), QByteArray("abcd"));
    EXPECT_EQ(fram.calls.last(), QString::fromLatin1("close 7"));

    fram.short_by = 1;
    ::testing::internal::CaptureStdout();
    EXPECT_FALSE(setting.readFRAM2Buffer(10, 4, bytes));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "read fram proc failed!\n");
}

TEST_F(Settings, LayOutARealFramFileAsTheChip) {
    directory.write(QString::fromLatin1("fram"), QByteArray(204, '\xEE'));
    KSetting setting;
    EXPECT_TRUE(setting.setSettingValue(0, 0x0201));
    EXPECT_TRUE(setting.setSettingValue(99, 0x0403));
    EXPECT_TRUE(setting.writeFram());
    const QByteArray expected = QByteArray(2, '\xEE') + QByteArray("\x04\x06\x01\x02", 4) +
                                QByteArray(196, '\0') + QByteArray("\x03\x04", 2);
    EXPECT_EQ(directory.read(QString::fromLatin1("fram")), expected);
}

TEST_F(Settings, ThatAreNotValidAnswerNothingAndSayso) {
    struct InvalidSetting : KSetting {
        explicit InvalidSetting(FramDevice& device) : KSetting(device) { valid = false; }
    } setting(fram);
    EXPECT_EQ(setting.getSettingValue(0), -1);
    EXPECT_FALSE(setting.setSettingValue(0, 1));
    ::testing::internal::CaptureStdout();
    EXPECT_FALSE(setting.saveSetting());
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "no valid setting!\n");
    EXPECT_TRUE(fram.calls.isEmpty());
}

TEST_F(Settings, OfTheProcessAreOneObject) {
    EXPECT_EQ(KSetting::getInstance(), KSetting::getInstance());
}

TEST_F(Settings, OfTheProcessAreDeletedAtItsEnd) {
    EXPECT_EXIT(
        {
            const SignalCounter deleted(KSetting::getInstance(), SIGNAL(destroyed()));
            KSetting::drop();
            std::_Exit(deleted.value());
        },
        ::testing::ExitedWithCode(1), "");
}
