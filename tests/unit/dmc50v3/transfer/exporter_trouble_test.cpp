// What can go wrong around a transfer: the stick, the line, the panel's own
// impatience.
#include "tests/support/dialogdriver.h"
#include "tests/support/goldenprograms.h"
#include "tests/support/limitedfilesize.h"
#include "tests/unit/dmc50v3/transfer/transferfixture.h"

#include <atomic>
#include <thread>

namespace {

const char* const NoStickNotice = "DMC50|The system can't not detect the USB Stick.|1";

class ExporterTrouble : public TransferFixture {
protected:
    /** The stick is gone, and the storage monitor has noticed or not. */
    void pullStick(bool is_noticed) {
        m_stick.remove();
        if (is_noticed)
            m_environment.pullStick();
    }

    /** Reads three programs and loses the stick, and so the read, at the second. */
    void readAndPullStick(bool is_noticed) {
        m_on_program_read = [this, is_noticed](int number) {
            if (number == 2)
                pullStick(is_noticed);
            return true;
        };
        read(7, 3);
        EXPECT_EQ(readTag("VVT_ERROR1"), 1);
    }

    /** Reads every tag as the panel does, from a thread of its own, until told
     *  to stop. True if no value was ever out of its range. */
    bool pollAllTags(const std::atomic<bool>& stop) {
        bool sane = true;
        while (!stop) {
            for (const char* flag : {"VVT_ENABLE0", "VVT_ENABLE1", "VVT_ERROR0", "VVT_ERROR1"})
                sane = sane && (readTag(flag) | 1) == 1;
            for (const char* progress : {"VVT_PROGRESS0", "VVT_PROGRESS1"})
                sane = sane && readTag(progress) >= 0 && readTag(progress) <= 100;
            sane = sane && m_ids.contains(readTag("VVT_PROG_ID0"));
            sane = sane && m_counts.contains(readTag("VVT_PROG_COUNT0"));
            std::this_thread::yield();
        }
        return sane;
    }

    // What a panel that polls may see: the start's values, and those it wrote.
    const QList<int> m_ids = QList<int>() << 0 << 7 << 8;
    const QList<int> m_counts = QList<int>() << 0 << 32;
};

} // namespace

TEST_F(ExporterTrouble, AStickPulledDuringAReadIsAReportedError) {
    readAndPullStick(true);
    EXPECT_EQ(m_notices.notices(), QStringList(QLatin1String(NoStickNotice)));
    m_environment.pass(2000);
    expectIdle();
}

TEST_F(ExporterTrouble, AStickPulledUnnoticedDuringAReadIsAnErrorWithoutALog) {
    readAndPullStick(false);
    EXPECT_TRUE(m_notices.notices().isEmpty());
    m_environment.pass(2000);
    expectIdle();
}

TEST_F(ExporterTrouble, AStickPulledAfterAReadIsMissedByTheNextOnly) {
    read(7, 1);
    pullStick(true);
    m_environment.pass(2000);
    expectIdle();
    EXPECT_EQ(readTag("VVT_ERROR1"), 0);
    read(7, 1);
    EXPECT_EQ(m_notices.notices(), QStringList(QLatin1String(NoStickNotice)));
    expectIdle();
}

TEST_F(ExporterTrouble, ATemplateWithoutAStickIsANoticeWithoutAnErrorFlag) {
    m_environment.pullStick();
    read(-1, 1);
    EXPECT_EQ(m_notices.notices(), QStringList(QLatin1String(NoStickNotice)));
    EXPECT_EQ(readTag("VVT_ERROR1"), 0);
    EXPECT_EQ(m_environment.pendingCalls(), 0);
    expectIdle();
}

TEST_F(ExporterTrouble, AStickPulledUnnoticedBeforeAWriteIsAnErrorWithoutALog) {
    pullStick(false);
    write(7, 1);
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
    EXPECT_TRUE(m_notices.notices().isEmpty());
    EXPECT_TRUE(m_port.requests().isEmpty());
    expectIdle();
}

TEST_F(ExporterTrouble, AStickPulledWhileTheOperatorChoosesIsAReportedError) {
    saveTable(7, 1);
    m_stick.write(QLatin1String("PROG_7_b.txt"), "");
    DialogDriver operator_at_panel(DialogDriver::PressOk);
    operator_at_panel.m_before_answer = [this] { pullStick(true); };
    write(7, 1);
    EXPECT_EQ(operator_at_panel.dialogsSeen(), 1);
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
    EXPECT_EQ(m_notices.notices(), QStringList(QLatin1String(NoStickNotice)));
    EXPECT_TRUE(m_port.requests().isEmpty());
    expectIdle();
}

TEST_F(ExporterTrouble, AStickPulledAfterAWriteIsMissedByTheNextOnly) {
    saveTable(7, 1);
    write(7, 1);
    pullStick(true);
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
    EXPECT_TRUE(m_notices.notices().isEmpty());
    write(7, 1);
    EXPECT_EQ(m_notices.notices(), QStringList(QLatin1String(NoStickNotice)));
    expectIdle();
}

TEST_F(ExporterTrouble, AStickPulledAfterTheFileIsLoadedDoesNotStopAWrite) {
    saveTable(7, 32);
    m_port.setAnswer([this](const QByteArray& request) {
        pullStick(true);
        return m_controller.answer(request);
    });
    write(7, 32);
    EXPECT_EQ(program(32), imageOf(32));
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
    expectIdle();
}

TEST_F(ExporterTrouble, AStickPulledBeforeAFailedWriteIsLoggedIsStillAnError) {
    saveTable(7, 32);
    m_port.m_timeout = 9000;
    m_port.m_retries = 1;
    m_port.setAnswer([this](const QByteArray&) {
        pullStick(true);
        m_clock.sleepMsecs(quint32(m_port.m_timeout));
        return QByteArray();
    });
    write(7, 32);
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
    EXPECT_EQ(m_notices.notices(), QStringList(QLatin1String(NoStickNotice)));
    expectIdle();
}

TEST_F(ExporterTrouble, AFullStickLeavesATruncatedFileThatCountsAsSaved) {
    choose(7, 3); // makes the project's database
    {
        const LimitedFileSize full(700);
        read(7, 3);
    }
    EXPECT_EQ(m_stick.read(file(7)).size(), 700);
    EXPECT_EQ(readTag("VVT_ERROR1"), 0);
    m_environment.pass(2000);
    expectIdle();
}

TEST_F(ExporterTrouble, AFullStickLeavesATruncatedTemplateThatCountsAsSaved) {
    choose(-1, 3);
    {
        const LimitedFileSize full(100);
        read(-1, 3);
    }
    EXPECT_EQ(m_stick.read(QLatin1String("PROG_template.txt")).size(), 100);
    EXPECT_EQ(m_notices.notices(), QStringList());
    m_environment.pass(500);
    expectIdle();
}

TEST_F(ExporterTrouble, AFullStickCutsTheLogOfAFailedWriteButNotItsError) {
    m_stick.write(file(7), goldenFile(QLatin1String("PROG_0.txt"))); // no programs in it
    choose(7, 1);
    {
        const LimitedFileSize full(10);
        write(7, 1);
    }
    EXPECT_EQ(m_stick.read(QLatin1String("WRITE_PROG_7_ERROR.txt")), QByteArray("No content"));
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
    expectIdle();
}

TEST_F(ExporterTrouble, AStickThatCannotBeWrittenIsAnErrorWithoutALog) {
    m_environment.mountStick(QLatin1String("/proc")); // no file can be made there
    read(7, 1);
    EXPECT_EQ(readTag("VVT_ERROR1"), 1);
    m_environment.pass(2000);
    expectIdle();
    write(7, 1); // there is no program file either
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
    EXPECT_TRUE(m_notices.notices().isEmpty());
    expectIdle();
}

TEST_F(ExporterTrouble, ATemplateForAStickThatCannotBeWrittenIsANotice) {
    m_environment.mountStick(QLatin1String("/proc"));
    read(-1, 1);
    EXPECT_EQ(m_notices.notices(), QStringList(QLatin1String("DMC50|File cannot be opened.|1")));
    EXPECT_EQ(readTag("VVT_ERROR1"), 0);
    m_environment.pass(500);
    expectIdle();
}

TEST_F(ExporterTrouble, AControllerThatFallsSilentForGoodEndsTheReadAtOnce) {
    m_port.m_retries = 1;
    m_on_program_read = [](int number) { return number < 20; };
    read(7, 32);
    EXPECT_TRUE(m_stick.read(QLatin1String("READ_PROG_7_ERROR.txt")).contains("[NA1260]"));
    EXPECT_FALSE(m_stick.contains(file(7)));
    m_environment.pass(2000);
    expectIdle();
}

TEST_F(ExporterTrouble, AControllerThatFallsSilentInAWriteKeepsWhatItHasReceived) {
    saveTable(7, 32);
    m_port.m_timeout = 9000;
    m_port.m_retries = 1;
    m_port.setAnswer([this](const QByteArray& request) {
        if (m_port.requests().size() <= 10)
            return m_controller.answer(request); // 25 values each
        m_clock.sleepMsecs(quint32(m_port.m_timeout));
        return QByteArray();
    });
    write(7, 32);
    EXPECT_EQ(m_stick.read(QLatin1String("WRITE_PROG_7_ERROR.txt")),
              QByteArray("Writing Data Fail,No Response in communication."));
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
    EXPECT_EQ(program(10), imageOf(10));
    EXPECT_EQ(program(12), imageOf(0));
    expectIdle();
}

TEST_F(ExporterTrouble, ReadAndWriteRequestedTogetherRunOneAfterTheOther) {
    saveTable(8, 32);
    bool overlapped = false;
    int reads_seen = 0;
    m_port.setAnswer([&](const QByteArray& request) {
        const bool is_read = requestCommand(request) == "RN";
        reads_seen += is_read;
        overlapped = overlapped || (readTag("VVT_ENABLE0") == 1 && is_read);
        return m_controller.answer(request);
    });
    choose(8, 32);
    writeTag("VVT_ENABLE1", 1);
    writeTag("VVT_ENABLE0", 1);
    waitForWorker();
    EXPECT_FALSE(overlapped);
    EXPECT_EQ(reads_seen, 32);
    // The read came first and replaced the file, so zeros were written.
    EXPECT_EQ(program(32), imageOf(0));
    m_environment.pass(2000);
    expectIdle();
}

TEST_F(ExporterTrouble, APanelThatPollsEveryTagMeanwhileSeesSaneValues) {
    saveTable(8, 32);
    std::atomic<bool> stop(false);
    bool sane = false;
    std::thread panel([&] { sane = pollAllTags(stop); });
    read(7, 32);
    m_environment.pass(2000);
    write(8, 32);
    m_environment.pass(2000);
    stop = true;
    panel.join();
    EXPECT_TRUE(sane);
    EXPECT_EQ(program(32), imageOf(32));
    expectIdle();
}

TEST_F(ExporterTrouble, NarrowTextsMeanTheSameAfterEveryWayOut) {
    const auto narrow = [] { return QString("\263]\251w"); };
    const QString before = narrow();
    read(7, 1);
    EXPECT_EQ(narrow(), before);
    m_environment.pass(2000);
    read(-1, 1);
    EXPECT_EQ(narrow(), before);
    m_environment.pass(2000);
    m_environment.mountStick(QLatin1String("/nowhere")); // no file can be opened
    read(7, 1);
    EXPECT_EQ(narrow(), before);
    m_environment.pass(2000);
    read(-1, 1);
    EXPECT_EQ(narrow(), before);
    m_environment.pass(2000);
    m_environment.pullStick();
    read(7, 1);
    EXPECT_EQ(narrow(), before);
    m_environment.mountStick(m_stick.path());
    m_port.m_retries = 1;
    m_on_program_read = [](int) { return false; }; // times out
    read(7, 1);
    EXPECT_EQ(readTag("VVT_ERROR1"), 1);
    EXPECT_EQ(narrow(), before);
}
