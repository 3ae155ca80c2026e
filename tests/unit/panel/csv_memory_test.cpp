// Tables that take more memory than there is, by the machine's word, by a limit
// of the process, or by an allocation that fails.
#include "runtime/base/connectchecked.h"
#include "runtime/panel/availablememory.h"
#include "runtime/panel/csvmemory.h"
#include "tests/support/machinememory.h"
#include "tests/unit/panel/csvtesting.h"

#include <QFile>
#include <QTextCodec>
#include <QTextStream>

#include <gtest/gtest.h>

#include <new>

#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

const quint64 MiB = 1024 * 1024;
const int Million = 1000 * 1000;

class CsvMemoryTest : public ::testing::Test {
protected:
    CsvMemoryTest() : path(directory.filePath(text("t.txt"))) {
        loader.setCodec(QTextCodec::codecForName("ISO-8859-1"));
    }

    void write(const QByteArray& content) { directory.write(text("t.txt"), content); }

    void writeZeros(quint64 bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_TRUE(file.resize(qint64(bytes))); // take no room on the disk
    }

    /** openFile() of a file that must be refused. */
    void expectRefused(const QStringList& errors = QStringList()) {
        EXPECT_FALSE(loader.openFile(path));
        EXPECT_EQ(loader.m_status, 1);
        EXPECT_TRUE(loader.errorMessageList() == errors)
            << loader.errorMessageList().join(text("; ")).toStdString();
        EXPECT_TRUE(loader.warningMessageList().isEmpty());
        EXPECT_TRUE(loader.fileContent().isEmpty());
        EXPECT_TRUE(loader.errorMessageList() ==
                    errors + texts({"File cannot be opened.", "Please select the right file."}));
    }

    ScratchSettings settings;
    MachineMemory machine;
    TemporaryDirectory directory;
    const QString path;
    WorkerLoader loader;
};

const char* const TooShortRows = "Not enough memory to fill up the rows short of header.";

/** A table whose fields all differ from those above, of @p width characters. */
QByteArray differingTable(int rows, int columns, int width) {
    QByteArray table;
    table.reserve(rows * columns * (width + 1));
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column) {
            table += QByteArray(width, char('a' + row % 20));
            table += column + 1 < columns ? '\t' : '\n';
        }
    return table;
}

/** A header of @p columns columns and rows of one value. */
QByteArray shortRows(int columns, int rows) {
    return QByteArray(columns - 1, '\t') + '\n' + QByteArray("1\n").repeated(rows);
}

} // namespace

TEST(AvailableMemory, IsWhatTheKernelSays) {
    MachineMemory machine;
    machine.setInformation(
        "MemTotal:  9 kB\nMemFree: 8 kB\nMemAvailable:     2048 kB\nBuffers: 7 kB\n"
        "Cached: 6 kB\n");
    EXPECT_EQ(availableMemory(), 2 * MiB);
    machine.setInformation("MemAvailable: 1 kB\n");
    EXPECT_EQ(availableMemory(), 1024u) << "in the first line";
    machine.setInformation(QByteArray(10000, '\n') + "MemAvailable: 3 kB\n");
    EXPECT_EQ(availableMemory(), 3 * 1024u);
}

TEST(AvailableMemory, OfAnOldKernelIsWhatIsFreeOrHoldsFiles) {
    MachineMemory machine;
    machine.setInformation("MemTotal: 9999 kB\nMemFree: 1 kB\nBuffers: 20 kB\nCached: 300 kB\n"
                           "SwapCached: 4000 kB\n");
    EXPECT_EQ(availableMemory(), 321u * 1024);
}

TEST(AvailableMemory, IsBoundByAPointerAloneWhereTheKernelSaysNothing) {
    MachineMemory machine;
    for (const char* missing :
         {"", "MemFree: 1 kB\nBuffers: 1 kB\n", "MemFree: 1 kB\nCached: 1 kB\n",
          "Buffers: 1 kB\nCached: 1 kB\n", "MemAvailable: much\n"}) {
        EXPECT_EQ(availableMemory() == UnlimitedMemory, sizeof(void*) > 4);
        EXPECT_GT(availableMemory(), 64 * MiB);
        machine.setInformation(missing);
    }
    EXPECT_EQ(availableMemory() == UnlimitedMemory, sizeof(void*) > 4);
}

TEST(CsvMemoryCosts, AreThoseOfTheHeap) {
    const qint64 word = sizeof(void*);
    EXPECT_EQ(heapBytes(1), 4 * word) << "the smallest";
    EXPECT_EQ(heapBytes(3 * word), 4 * word) << "and one word before it";
    EXPECT_EQ(heapBytes(3 * word + 1), 6 * word);
    EXPECT_EQ(heapBytes(5 * word), 6 * word);
    EXPECT_EQ(bytesOfText(0), 0) << "shared by all";
    EXPECT_EQ(bytesOfText(1000), heapBytes(4 * qint64(sizeof(int)) + word + 2002));
    EXPECT_EQ(bytesOfList(1000), heapBytes(4 * qint64(sizeof(int)) + 1001 * word));
}

TEST(CsvMemoryCosts, AreTakenUntilNothingIsLeftButAnEighthAndFourMebibytes) {
    CsvMemory memory(64 * MiB);
    EXPECT_FALSE(memory.take(52 * qint64(MiB) + 1));
    EXPECT_TRUE(memory.take(52 * qint64(MiB)));
    EXPECT_FALSE(memory.take(1));
    memory.giveBack(10);
    EXPECT_FALSE(memory.take(11));
    EXPECT_TRUE(memory.take(10));
    memory.restart(64 * MiB);
    EXPECT_TRUE(memory.hasRoomFor(52 * qint64(MiB)));
    EXPECT_FALSE(CsvMemory(4 * MiB).take(1));
    EXPECT_TRUE(CsvMemory(UnlimitedMemory).take(Q_INT64_C(1) << 60));
}

TEST_F(CsvMemoryTest, AFileLargerThanTheMemoryIsRefusedUnread) {
    machine.setAvailable(64 * MiB);
    writeZeros(52 * MiB + 1);
    expectRefused();
    EXPECT_EQ(settings.defaultDir(), QString()) << "not opened";
    writeZeros(52 * MiB);
    expectRefused();
    EXPECT_EQ(settings.defaultDir(), directory.path()) << "opened, but one line goes on and on";
}

TEST_F(CsvMemoryTest, ATextLargerThanTheMemoryIsRefused) {
    machine.setAvailable(64 * MiB);
    const QByteArray line = QByteArray(1023, 'x') + '\n';
    write("a\n" + line.repeated(26 * 1024)); // 52 MiB in UTF-16
    expectRefused();
    write("a\n" + line.repeated(25 * 1024));
    EXPECT_TRUE(loader.openFile(path)) << "its fields are one";
}

TEST_F(CsvMemoryTest, ALineThatGoesOnNeedsRoomForItsCopies) {
    machine.setAvailable(64 * MiB);
    write("a\n" + QByteArray(6 * Million, 'x') + '\n'); // 12 MB, three times over
    EXPECT_TRUE(loader.openFile(path));
    write("a\n" + QByteArray(10 * Million, 'x') + '\n');
    expectRefused();
}

TEST_F(CsvMemoryTest, ATableLargerThanTheMemoryIsRefused) {
    machine.setAvailable(64 * MiB);
    write(differingTable(20000, 25, 5)); // 500,000 fields of 48 bytes and a pointer at most
    EXPECT_TRUE(loader.openFile(path));
    EXPECT_EQ(loader.m_content.size(), 20000);
    write(differingTable(70000, 25, 5));
    expectRefused();
    EXPECT_TRUE(loader.m_content.isEmpty());
}

TEST_F(CsvMemoryTest, ARowLargerThanTheMemoryIsRefused) {
    machine.setAvailable(64 * MiB);
    write(QByteArray(20 * Million, '\t') + "\n1\n"); // 40 MB of text, but 80 or more of pointers
    expectRefused();
}

TEST_F(CsvMemoryTest, AQuotedFieldNeedsRoomForItsCopies) {
    machine.setAvailable(64 * MiB);
    const QByteArray line = QByteArray(99, 'x') + '\n'; // not one line, which has its own copies
    write("a\n\"" + line.repeated(20000) + "\"\n");
    EXPECT_TRUE(loader.openFile(path));
    write("a\n\"" + line.repeated(100000) + "\"\n"); // 20 MB, four times over
    expectRefused();
    write("a\n1\n\"" + QByteArray(7 * Million, 'x') + "\"\n");
    expectRefused();
}

TEST_F(CsvMemoryTest, ManyMessagesAreCounted) {
    machine.setAvailable(8 * sizeof(void*) * MiB);
    const QByteArray longer = QByteArray("1\t1\n").repeated(300000); // fields shared: 30 MB
    write("a\n" + QByteArray("1\n").repeated(300000));
    EXPECT_TRUE(loader.openFile(path));
    write("1\n" + longer);
    expectRefused();
}

TEST_F(CsvMemoryTest, ShortRowsAreFilledUpAsLongAsThereIsMemory) {
    machine.setAvailable(128 * MiB);
    write(shortRows(60, 72000));
    EXPECT_TRUE(loader.openFile(path));
    ASSERT_EQ(loader.m_content.size(), 72001);
    EXPECT_EQ(loader.m_content.last().size(), 60);
    EXPECT_EQ(loader.warningMessageList().size(), 72000);
    EXPECT_EQ(loader.warningMessageList().last(),
              text("Line 72001 is 59 columns short of header."));
}

TEST_F(CsvMemoryTest, ShortRowsThatTakeAllMemoryAreRefusedWithATextOfTheirOwn) {
    machine.setAvailable(64 * MiB);
    write(shortRows(4096, int(4096 / sizeof(void*)))); // 16 MiB of pointers
    EXPECT_TRUE(loader.openFile(path));
    write(shortRows(4096, int(32768 / sizeof(void*)))); // 128 MiB
    expectRefused(texts({TooShortRows}));
    EXPECT_TRUE(loader.m_content.isEmpty());

    write(shortRows(100000, 10 * Million)); // terabytes
    expectRefused(texts({TooShortRows}));
}

TEST_F(CsvMemoryTest, RowsThatAreNotPaddedAreNotToBlame) {
    machine.setAvailable(64 * MiB);
    loader.m_tolerate_column_mismatch = false;
    write(shortRows(60, 400000));
    EXPECT_FALSE(loader.openFile(path));
    EXPECT_EQ(loader.m_status, 1);
    EXPECT_FALSE(loader.errorMessageList().contains(text(TooShortRows)));
}

namespace {

/** Says that there is much more memory as soon as the lines are counted. */
class LaterMemory : public QObject {
    Q_OBJECT
public:
    explicit LaterMemory(MachineMemory& machine) : m_machine(machine) {}
public slots:
    void grow() {
        if (!m_has_grown)
            m_machine.setAvailable(1024 * MiB);
        m_has_grown = true;
    }

private:
    MachineMemory& m_machine;
    bool m_has_grown = false;
};

/** A stick on whose reading an allocation fails. */
class ExhaustingDevice : public QIODevice {
protected:
    qint64 readData(char* data, qint64) override {
        if (m_lines++ < 100) {
            qstrncpy(data, "1\n", 3);
            return 2;
        }
        throw std::bad_alloc();
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    int m_lines = 0;
};

} // namespace

TEST_F(CsvMemoryTest, WhatTheLastTableTookIsAvailableAgain) {
    write(differingTable(20000, 25, 5));
    for (bool replaces : {false, true}) {
        machine.setAvailable(4 * sizeof(void*) * MiB);
        LaterMemory later(machine);
        connectChecked(&loader, SIGNAL(updateStatus(QString, QVariant)), &later, SLOT(grow()),
                       Qt::DirectConnection);
        loader.m_content.clear();
        if (replaces)
            loader.m_content = table({texts({"a"}), texts({"1"})}); // as if it were large
        EXPECT_EQ(loader.openFile(path), replaces);
    }
}

TEST_F(CsvMemoryTest, AnAllocationThatFailsEndsTheLoad) {
    ExhaustingDevice stick;
    ASSERT_TRUE(stick.open(QIODevice::ReadOnly));
    QTextStream stream(&stick);
    loader.m_content = table({texts({"a"}), texts({"1"})});
    loader.loadFile(stream, loader.errors, loader.warnings);
    EXPECT_EQ(loader.m_status, 1);
    EXPECT_TRUE(loader.m_content.isEmpty());
    EXPECT_EQ(loader.errors, QStringList());
}

// A sanitizer needs terabytes of address space for itself, and its heap takes more
// than the estimate for the C library's.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace {

/** Leaves this process @p bytes of address space beside what it uses. */
void limitAddressSpace(quint64 bytes) {
    QFile sizes(text("/proc/self/statm"));
    if (!sizes.open(QIODevice::ReadOnly))
        _exit(2);
    const quint64 in_use =
        sizes.readLine().split(' ').first().toULongLong() * quint64(sysconf(_SC_PAGESIZE));
    const rlimit limit = {rlim_t(in_use + bytes), RLIM_INFINITY};
    if (setrlimit(RLIMIT_AS, &limit) != 0)
        _exit(3);
}

/** For a process of its own with little address space: 0 if opening @p path is
 *  refused as it should be. */
int openingWithLittleAddressSpace(const QString& path) {
    WorkerLoader loader;
    loader.setCodec(QTextCodec::codecForName("ISO-8859-1"));
    limitAddressSpace(256 * MiB);
    return !loader.openFile(path) && loader.m_status == 1 && loader.errorMessageList().isEmpty() &&
                   loader.fileContent().isEmpty()
               ? 0
               : 1;
}

} // namespace

TEST(AvailableMemory, IsTheRestOfALimitedAddressSpace) {
    const auto left = [] {
        MachineMemory machine;
        limitAddressSpace(256 * MiB);
        const quint64 available = availableMemory();
        machine.setAvailable(MiB);
        if (availableMemory() != MiB) // the lesser of the two
            return 4;
        limitAddressSpace(0);
        const quint64 none = availableMemory();
        const rlimit less = {rlim_t(MiB), RLIM_INFINITY};
        setrlimit(RLIMIT_AS, &less);
        return available > 250 * MiB && available <= 256 * MiB && none < MiB &&
                       availableMemory() == 0
                   ? 0
                   : 5;
    };
    EXPECT_EXIT(_exit(left()), ::testing::ExitedWithCode(0), "");
}

TEST_F(CsvMemoryTest, AFileLargerThanTheAddressSpaceIsRefused) {
    machine.setAvailable(1024 * 1024 * MiB);
    writeZeros(100 * MiB); // 200 MiB of text
    EXPECT_EXIT(_exit(openingWithLittleAddressSpace(path)), ::testing::ExitedWithCode(0), "");
    writeZeros(1024 * MiB);
    EXPECT_EXIT(_exit(openingWithLittleAddressSpace(path)), ::testing::ExitedWithCode(0), "");
}

TEST_F(CsvMemoryTest, ATableLargerThanTheAddressSpaceIsRefused) {
    machine.setAvailable(1024 * 1024 * MiB);
    write(differingTable(400000, 25, 1));
    EXPECT_EXIT(_exit(openingWithLittleAddressSpace(path)), ::testing::ExitedWithCode(0), "");
}

namespace {

quint64 statusBytes(const char* key) {
    QFile status(text("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray& line : lines)
        if (line.startsWith(key))
            return line.mid(int(qstrlen(key))).replace("kB", "").trimmed().toULongLong() * 1024;
    return 0;
}

/** For a process of its own: opens @p path without a limit and then with limits
 *  on either side of what that took at its peak; 0 if the load fits into half as
 *  much again and eight mebibytes, but not into the peak itself. */
int comparingWithThePeak(MachineMemory& machine, const QString& path) {
    malloc_trim(0); // free memory of the parent's would hide what is used
    QFile reset(text("/proc/self/clear_refs"));
    if (!reset.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || reset.write("5") != 1)
        return 2;
    const quint64 before = statusBytes("VmRSS:");
    const auto isLoaded = [&path] {
        WorkerLoader loader;
        loader.setCodec(QTextCodec::codecForName("ISO-8859-1"));
        return loader.openFile(path);
    };
    if (!isLoaded())
        return 3;
    const quint64 peak = statusBytes("VmHWM:") - before;
    machine.setAvailable(peak / 2 * 3 + 8 * MiB);
    if (!isLoaded())
        return 4;
    machine.setAvailable(peak);
    return isLoaded() ? 5 : 0;
}

} // namespace

TEST_F(CsvMemoryTest, TheEstimateIsNearTheMeasuredPeak) {
    for (const QByteArray& content :
         {differingTable(40000, 25, 5), differingTable(1000000, 1, 9),
          differingTable(2000, 25, 300), shortRows(200, 20000), shortRows(2, 200000)}) {
        write(content);
        machine.setAvailable(1024 * 1024 * MiB);
        EXPECT_EXIT(_exit(comparingWithThePeak(machine, path)), ::testing::ExitedWithCode(0), "")
            << content.left(30).constData();
    }
}

#endif

#include "csv_memory_test.moc"
