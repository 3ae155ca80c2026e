// From the controller to a file.
#include "runtime/base/qtcompat.h"
#include "tests/support/goldenprograms.h"
#include "tests/unit/dmc50v3/transfer/transferfixture.h"

#include <atomic>
#include <vector>

namespace {

class ExporterRead : public TransferFixture {
protected:
    void setGoldenPrograms() {
        const QList<QByteArray> images = goldenProgramImages();
        for (int i = 0; i < images.size(); ++i)
            setProgram(i + 1, images.at(i));
    }

    /** The labels' numbers in the file of @p program_id. */
    std::vector<int> numbersInFile(int program_id) {
        const QString text =
            QTextCodec::codecForName("UTF-16LE")->toUnicode(m_stick.read(file(program_id)).mid(2));
        const QStringList lines = text.split(QLatin1Char('\n'));
        std::vector<int> numbers;
        for (int i = 1; i < lines.size() - 1; ++i)
            numbers.push_back(lines.at(i).section(QLatin1Char('\t'), 0, 0).mid(2).toInt());
        return numbers;
    }
};

const char* const TimeoutText = "Reading Data Timeout,Please check the communication or the "
                                "address [%1] is valid or not.";

} // namespace

TEST_F(ExporterRead, FileIsByteForByteTheGoldenOne) {
    setGoldenPrograms();
    read(7, 3);
    EXPECT_EQ(m_stick.read(file(7)), goldenFile(file(7)));
    EXPECT_EQ(m_environment.syncs(), 1);
    EXPECT_EQ(readTag("VVT_ERROR1"), 0);
}

TEST_F(ExporterRead, WithoutProgramsTheFileHoldsTheHeaderOnly) {
    read(0, 0);
    EXPECT_EQ(m_stick.read(file(0)), goldenFile(file(0)));
    EXPECT_TRUE(m_port.requests().isEmpty());
}

TEST_F(ExporterRead, TemplateIsTheGoldenOneAndNothingIsRead) {
    read(-1, 3);
    EXPECT_EQ(m_stick.read(QLatin1String("PROG_template.txt")),
              goldenFile(QLatin1String("PROG_template.txt")));
    EXPECT_FALSE(m_stick.contains(file(-1)));
    EXPECT_TRUE(m_port.requests().isEmpty());
    EXPECT_EQ(m_environment.syncs(), 1); // the stick may be pulled as after a read
}

TEST_F(ExporterRead, ASlotWithoutATagIsLeftOutAndTheOthersKeepTheirNumbers) {
    leaveOut(2);
    read(7, 3);
    EXPECT_EQ(numbersInFile(7), (std::vector<int>{1, 3}));
    EXPECT_EQ(readTag("VVT_ERROR1"), 0);
}

TEST_F(ExporterRead, ProgressShowsThePartDoneBeforeEachProgram) {
    std::vector<int> shown;
    m_on_program_read = [&](int) {
        shown.push_back(readTag("VVT_PROGRESS1"));
        return true;
    };
    read(7, 4);
    // The number of program k is set after its read, so each read still sees the
    // one before.
    EXPECT_EQ(shown, (std::vector<int>{0, 0, 25, 50}));
    EXPECT_EQ(readTag("VVT_PROGRESS1"), 100);
}

TEST_F(ExporterRead, EndIsShownForTwoSeconds) {
    read(7, 1);
    EXPECT_EQ(m_environment.delays(), QList<int>() << 2000);
    EXPECT_EQ(readTag("VVT_ENABLE1"), 1);
    m_environment.pass(1999);
    EXPECT_EQ(readTag("VVT_PROGRESS1"), 100);
    m_environment.pass(1);
    EXPECT_EQ(readTag("VVT_PROGRESS1"), 0);
    EXPECT_EQ(readTag("VVT_ENABLE1"), 0);
}

TEST_F(ExporterRead, TemplateIsShownForHalfASecond) {
    read(-1, 1);
    EXPECT_EQ(readTag("VVT_PROGRESS1"), 100);
    EXPECT_EQ(m_environment.delays(), QList<int>() << 500);
    m_environment.pass(500);
    EXPECT_EQ(readTag("VVT_ENABLE1"), 0);
}

TEST_F(ExporterRead, OrdinaryReadsFailMeanwhileAndWorkAgainAfterwards) {
    bool was_blocked = false;
    m_on_program_read = [&](int) {
        was_blocked = isProgramReading();
        return true;
    };
    read(7, 1);
    EXPECT_TRUE(was_blocked);
    EXPECT_FALSE(isProgramReading());
}

TEST_F(ExporterRead, WithoutAStickItEndsAfterTwoSecondsWithoutAnError) {
    m_environment.pullStick();
    const qint64 start = m_clock.msecsSinceBoot();
    read(7, 1);
    EXPECT_GE(m_clock.msecsSinceBoot() - start, 2000);
    EXPECT_EQ(readTag("VVT_ENABLE1"), 0);
    EXPECT_EQ(readTag("VVT_PROGRESS1"), 0);
    EXPECT_EQ(readTag("VVT_ERROR1"), 0);
    EXPECT_EQ(m_environment.pendingCalls(), 0);
    EXPECT_FALSE(isProgramReading());
    EXPECT_EQ(m_notices.notices().size(), 1);
}

TEST_F(ExporterRead, AReadOfMoreThanFiveSecondsAbortsWithALogAndNoFile) {
    m_port.m_retries = 1; // two attempts of 3000 ms
    m_on_program_read = [](int program) { return program != 2; };
    read(7, 3);
    EXPECT_EQ(QString::fromLatin1(m_stick.read(QLatin1String("READ_PROG_7_ERROR.txt"))),
              QString::fromLatin1(TimeoutText).arg(QLatin1String("NA1020")));
    EXPECT_FALSE(m_stick.contains(file(7)));
    EXPECT_EQ(readTag("VVT_ERROR1"), 1);
    EXPECT_EQ(readTag("VVT_PROGRESS1"), 100);
    EXPECT_EQ(m_environment.delays(), QList<int>() << 2000);
    EXPECT_FALSE(isProgramReading());
}

TEST_F(ExporterRead, AReadOfExactlyFiveSecondsIsNotTooLong) {
    std::atomic<qint64> now(0);
    std::atomic<int> duration(5000);
    m_environment.m_read_clock = [&] { return now.load(); };
    m_on_program_read = [&](int program) {
        if (program == 2)
            now += duration;
        return true;
    };
    read(7, 3);
    EXPECT_EQ(numbersInFile(7), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(readTag("VVT_ERROR1"), 0);
    m_environment.pass(2000);
    duration = 5001;
    read(8, 3);
    EXPECT_FALSE(m_stick.contains(file(8)));
    EXPECT_EQ(readTag("VVT_ERROR1"), 1);
}

TEST_F(ExporterRead, AReadThatFailsSoonerLeavesItsProgramOutWithoutAWord) {
    m_port.m_retries = 0; // 3000 ms
    m_on_program_read = [](int program) { return program != 2; };
    read(7, 3);
    EXPECT_EQ(numbersInFile(7), (std::vector<int>{1, 3}));
    EXPECT_EQ(readTag("VVT_ERROR1"), 0);
    EXPECT_FALSE(m_stick.contains(QLatin1String("READ_PROG_7_ERROR.txt")));
}

TEST_F(ExporterRead, AFileThatCannotBeSavedEndsTheDisplayAtOnceWithALog) {
    m_stick.makeDirectory(file(7)); // in the file's way
    read(7, 1);
    EXPECT_EQ(m_environment.syncs(), 1); // of the log
    EXPECT_EQ(m_stick.read(QLatin1String("READ_PROG_7_ERROR.txt")),
              QByteArray("File cannot be opened."));
    EXPECT_EQ(readTag("VVT_ERROR1"), 1);
    EXPECT_EQ(readTag("VVT_ENABLE1"), 0);
    EXPECT_EQ(readTag("VVT_PROGRESS1"), 100);
    m_environment.pass(2000);
    EXPECT_EQ(readTag("VVT_PROGRESS1"), 0);
}

TEST_F(ExporterRead, ATemplateThatCannotBeSavedIsANoticeWithoutAnErrorFlag) {
    m_stick.makeDirectory(QLatin1String("PROG_template.txt"));
    read(-1, 1);
    EXPECT_EQ(m_environment.syncs(), 0);
    EXPECT_EQ(m_notices.notices(), QStringList(QLatin1String("DMC50|File cannot be opened.|1")));
    EXPECT_EQ(readTag("VVT_ERROR1"), 0);
    EXPECT_EQ(readTag("VVT_ENABLE1"), 0);
    EXPECT_FALSE(m_stick.contains(QLatin1String("READ_PROG_-1_ERROR.txt")));
    EXPECT_FALSE(isProgramReading());
}

TEST_F(ExporterRead, AnErrorOfTheLastReadIsNotClearedByTheNext) {
    m_exporter->outputErrorLog(QStringList(), 0);
    read(7, 1);
    EXPECT_TRUE(m_stick.contains(file(7)));
    EXPECT_EQ(readTag("VVT_ERROR1"), 1);
}

TEST_F(ExporterRead, AStartIsIgnoredWhileTheEndIsStillShown) {
    read(7, 1);
    const int requests = m_port.requests().size();
    read(8, 1);
    EXPECT_EQ(m_port.requests().size(), requests);
    EXPECT_FALSE(m_stick.contains(file(8)));
    m_environment.pass(2000);
    read(8, 1);
    EXPECT_TRUE(m_stick.contains(file(8)));
}

TEST_F(ExporterRead, TheOldTimerEndsTheDisplayOfAReadThatFollowsAFailedOne) {
    m_stick.makeDirectory(file(7));
    read(7, 1);
    m_environment.pass(1500);
    read(8, 1);
    EXPECT_EQ(readTag("VVT_ENABLE1"), 1);
    m_environment.pass(500); // the failed read's 2000 ms
    EXPECT_EQ(readTag("VVT_ENABLE1"), 0);
}

TEST_F(ExporterRead, TheStationIsTheLowByteOfThePortsStation) {
    m_port.m_station = 0x101;
    setGoldenPrograms();
    read(7, 3);
    EXPECT_EQ(m_stick.read(file(7)), goldenFile(file(7)));
}
