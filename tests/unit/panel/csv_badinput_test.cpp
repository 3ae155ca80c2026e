// Files that are no tables, storage that fails, and texts made to be slow.
#include "tests/unit/panel/csvtesting.h"

#include <QFile>
#include <QProcess>
#include <QTextCodec>

#include <gtest/gtest.h>

#include <cerrno>
#include <random>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class CsvBadInput : public ::testing::Test {
protected:
    CsvBadInput() : path(directory.filePath(text("t.txt"))) {}

    /** Writes @p head, @p count times @p unit and @p tail as Latin-1, which
     *  the loader is set to. */
    void writeRepeated(const char* head, const QByteArray& unit, int count, const char* tail) {
        loader.setCodec(QTextCodec::codecForName("ISO-8859-1"));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(head);
        const int at_once = 1000;
        const QByteArray block = unit.repeated(at_once);
        for (int i = 0; i < count / at_once; ++i)
            file.write(block);
        file.write(tail);
    }

    ScratchSettings settings;
    TemporaryDirectory directory;
    const QString path;
    WorkerLoader loader;
    WorkerSaver saver;
};

// So many that a loader of quadratic time would take hours: ctest ends it.
const int Million = 1000 * 1000;

bool mountPrivately(const char* directory, const char* options) {
    const bool own_namespace =
        unshare(CLONE_NEWNS) == 0 || unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
    // The root of a chroot need not be a mount point.
    const bool is_private =
        mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 || errno == EINVAL;
    return own_namespace && is_private && mount("tmpfs", directory, "tmpfs", 0, options) == 0;
}

/** For a process of its own: saves to a tmpfs with @p options; 0 if saveFile()
 *  returned @p saved with @p errors. */
int savingToTinyDisk(const char* options, bool saved, const QStringList& errors) {
    const ScratchSettings settings;
    const TemporaryDirectory disk;
    const QByteArray mount_point = disk.path().toLocal8Bit();
    if (!mountPrivately(mount_point.constData(), options))
        return 2;
    QList<QStringList> rows;
    for (int i = 0; i < 100000; ++i)
        rows.append(texts({"program", "4294967295"}));
    WorkerSaver saver;
    const bool result = saver.saveFile(rows, disk.filePath(text("t.txt")));
    WorkerLoader loader; // whatever got there must be readable
    loader.openFile(disk.filePath(text("t.txt")));
    umount(mount_point.constData());
    return result == saved && saver.errorMessageList() == errors ? 0 : 1;
}

} // namespace

TEST_F(CsvBadInput, ADirectoryIsAFileThatCannotBeOpened) {
    EXPECT_FALSE(loader.openFile(directory.path()));
    EXPECT_EQ(loader.m_status, 1);
    EXPECT_EQ(loader.errorMessageList(), QStringList());
}

TEST_F(CsvBadInput, WhatIsNoRegularFileCannotBeOpened) {
    const QString pipe = directory.filePath(text("pipe")); // with no writer: opening it blocks
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    for (const QString& name : {text("/dev/zero"), text("/dev/null"), pipe}) {
        EXPECT_FALSE(loader.openFile(name));
        EXPECT_TRUE(loader.fileContent().isEmpty());
        EXPECT_EQ(loader.errorMessageList(),
                  texts({"File cannot be opened.", "Please select the right file."}));
    }
}

TEST_F(CsvBadInput, AFileThatMayNotBeWrittenIsReadAndLeftAsItIs) {
    const QString program = directory.filePath(text("program"));
    ASSERT_TRUE(QFile::copy(text("/bin/cat"), program));
    const QByteArray content = directory.read(text("program"));
    QProcess running; // so nobody may write it, not even the administrator
    running.start(program, QStringList());
    ASSERT_TRUE(running.waitForStarted());
    loader.openFile(program);
    EXPECT_NE(loader.m_status, 1);
    running.closeWriteChannel();
    EXPECT_TRUE(running.waitForFinished());
    EXPECT_EQ(directory.read(text("program")), content);
}

TEST_F(CsvBadInput, ALinkToAFileIsFollowed) {
    writeRepeated("a\n", "1\n", 1000, "");
    const QString link = directory.filePath(text("link"));
    ASSERT_TRUE(QFile::link(path, link));
    EXPECT_TRUE(loader.openFile(link));
    EXPECT_EQ(loader.m_content.size(), 1001);
}

TEST_F(CsvBadInput, AFileLongerThanAnyTableCannotBeOpened) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(Q_INT64_C(1) << 40)); // zeros, which take no room on the disk
    EXPECT_FALSE(loader.openFile(path));
    EXPECT_EQ(loader.m_status, 1);
    EXPECT_EQ(loader.errorMessageList(), QStringList());
}

TEST_F(CsvBadInput, AFileThatIsRefusedDoesNotSpoilTheNext) {
    EXPECT_FALSE(loader.openFile(text("/dev/zero")));
    writeRepeated("a\tb\n", "1\t2\n", 1000, "");
    EXPECT_TRUE(loader.openFile(path));
    EXPECT_EQ(loader.fileContent().size(), 1001);
}

TEST_F(CsvBadInput, AFileThatOpensButCannotBeReadHasNoContent) {
    EXPECT_FALSE(loader.openFile(text("/proc/self/mem"))); // nothing is mapped at 0
    EXPECT_EQ(loader.errorMessageList(), texts({"No content found in the imported file."}));
}

TEST_F(CsvBadInput, ALineOfAHundredMegabytesIsReadInLinearTime) {
    writeRepeated("", "x", 100 * Million, "");
    EXPECT_FALSE(loader.openFile(path));
    EXPECT_EQ(loader.errorMessageList(), texts({"No content found in the imported file."}));
}

TEST_F(CsvBadInput, AMillionRowsOfTwentyFiveFieldsAreNotTooMuch) {
    const QByteArray row = QByteArray("12345\t").repeated(24) + "12345\n";
    writeRepeated("", row, Million, "");
    EXPECT_TRUE(loader.openFile(path));
    EXPECT_EQ(loader.m_content.size(), Million);
    EXPECT_EQ(loader.m_content.last().size(), 25);
}

TEST_F(CsvBadInput, AnEndlessHeaderIsReadInLinearTime) {
    writeRepeated("", "x", 20 * Million, "\n1");
    EXPECT_FALSE(loader.openFile(path));
    EXPECT_EQ(loader.errorMessageList(), texts({"File format error.\nCannot detect delimiter."}));
}

TEST_F(CsvBadInput, AnEndlessFieldIsReadInLinearTime) {
    writeRepeated("a\tb\n1\t", "x", 20 * Million, "\n");
    EXPECT_TRUE(loader.openFile(path));
    EXPECT_EQ(loader.m_content.last().last().size(), 20 * Million);
}

TEST_F(CsvBadInput, AQuotedFieldOfMillionsOfPiecesIsReadInLinearTime) {
    writeRepeated("a\tb\n\"", "x\t", 5 * Million, "\"\t2\n");
    EXPECT_TRUE(loader.openFile(path));
    EXPECT_EQ(loader.m_content.last().first().size(), 10 * Million);
}

TEST_F(CsvBadInput, AQuotedFieldOfMillionsOfLinesIsReadInLinearTime) {
    writeRepeated("a\tb\n\"", "x\n", 5 * Million, "\"\t2\n");
    EXPECT_TRUE(loader.openFile(path));
    EXPECT_EQ(loader.m_content.last().first().size(), 10 * Million);
}

TEST_F(CsvBadInput, AFieldOfMillionsOfQuotesIsReadAndSavedInLinearTime) {
    writeRepeated("a\tb\n\"", "\"\"", 5 * Million, "\"\t2\n");
    EXPECT_TRUE(loader.openFile(path));
    const QList<QStringList> rows = loader.m_content;
    EXPECT_EQ(rows.last().first(), QString(5 * Million, QLatin1Char('"')));

    EXPECT_TRUE(saver.saveFile(rows, path));
    loader.init();
    EXPECT_TRUE(loader.openFile(path));
    EXPECT_EQ(loader.m_content, rows);
}

TEST_F(CsvBadInput, AQuoteThatIsNeverClosedIsFoundInLinearTime) {
    writeRepeated("a\tb\n\"", "x\t\n", 5 * Million, "");
    EXPECT_FALSE(loader.openFile(path));
    EXPECT_EQ(loader.errorMessageList(), texts({"Format error at line 5000002"}));
}

TEST_F(CsvBadInput, RandomBytesAreNeverMoreThanErrorsAndWarnings) {
    std::mt19937 random(3);
    const QList<QByteArray> codecs = QList<QByteArray>() << "UTF-16LE"
                                                         << "UTF-8"
                                                         << "Big5"
                                                         << "ISO-8859-1";
    for (int i = 0; i < 200; ++i) {
        QByteArray bytes;
        for (int length = 0; length < 40 * i; ++length)
            bytes.append(char(random()));
        directory.write(text("t.txt"), bytes);
        loader.setCodec(QTextCodec::codecForName(codecs.at(i % codecs.size())));
        const bool loaded = loader.openFile(path);
        EXPECT_EQ(loaded, loader.errorMessageList().isEmpty());
        loader.fileContent();
    }
}

TEST(CsvTinyDisk, CountsAsSavedToWhenItIsFull) {
    EXPECT_EXIT(_exit(savingToTinyDisk("size=64k", true, QStringList())),
                ::testing::ExitedWithCode(0), "");
}

TEST(CsvTinyDisk, IsReportedWhenItHasNoRoomForAFile) {
    EXPECT_EXIT(_exit(savingToTinyDisk("nr_inodes=1", false, texts({"File cannot be opened."}))),
                ::testing::ExitedWithCode(0), "");
}

TEST(CsvTinyDisk, IsReportedWhenItIsReadOnly) {
    EXPECT_EXIT(_exit(savingToTinyDisk("ro", false, texts({"File cannot be opened."}))),
                ::testing::ExitedWithCode(0), "");
}
