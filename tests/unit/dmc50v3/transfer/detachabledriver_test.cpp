// The driver as a transfer sees it: at work, gone, and not there yet.
#include "runtime/drivers/dmc50v3/transfer/detachabledriver.h"
#include "tests/unit/dmc50v3/driverfixture.h"

#include <atomic>
#include <future>
#include <thread>

namespace {

const int Station = 3;
const quint32 Slot = 0x1000;
const int Gone = 77; // a queue size that no driver has given

class DetachableDriverTest : public DriverFixture {
protected:
    DetachableDriverTest() {
        project("3-NA1000 3-NA1001 3-NA1002 NA1000 NA1001");
        m_port.m_station = Station;
        m_controller.setValue(Station, Slot, 0x01020304);
        m_controller.setValue(1, Slot, 0xBAD);
    }

    /** Makes the driver load its project and start its polling thread. */
    void attach() {
        read("INITDRV0", Byte, 1);
        m_detachable.attach(m_driver.get(), &m_port);
    }

    static CommunicatorCommand command(int type, int count) {
        return CommunicatorCommand(QString::fromLatin1("NA1000"), type, count);
    }

    quint32 queueSize() {
        quint32 size = Gone;
        EXPECT_TRUE(m_detachable.readWriteQueueSize(size));
        return size;
    }

    void expectNoCallIsMade() {
        quint32 size = Gone;
        EXPECT_TRUE(m_detachable.isGone());
        EXPECT_TRUE(m_detachable.readProgram(command(DoubleWord, 1)).isEmpty());
        m_detachable.writeProgram(command(DoubleWord, 1), QByteArray(4, '\1'));
        EXPECT_FALSE(m_detachable.readWriteQueueSize(size));
        EXPECT_EQ(size, quint32(Gone));
        m_detachable.setProgramReading(true);
        EXPECT_FALSE(m_probe->isProgramReading());
        EXPECT_TRUE(m_port.requests().isEmpty());
    }

    /** Puts @p pairs into the station's queue, while the polling thread sleeps and
     *  with it the time. */
    void fillQueue(int pairs) {
        m_clock.waitForSleepers(1);
        std::vector<AddrArg> args;
        for (int i = 0; i < pairs; ++i)
            args.push_back(AddrArg{Slot, quint32(i)});
        m_probe->thread()->writeDWords(Station, args);
    }

    DetachableDriver m_detachable;
};

} // namespace

TEST_F(DetachableDriverTest, CountsAsGoneBeforeItIsAttached) {
    expectNoCallIsMade();
}

TEST_F(DetachableDriverTest, MakesNoCallOnceDetached) {
    attach();
    EXPECT_FALSE(m_detachable.isGone());
    m_detachable.detach();
    expectNoCallIsMade();
}

TEST_F(DetachableDriverTest, ReadsFromTheStationOfThePort) {
    attach();
    EXPECT_EQ(m_detachable.readProgram(command(DoubleWord, 1)), QByteArray("\4\3\2\1", 4));
    m_port.m_station = 0x100 + Station; // the low 8 bits count
    EXPECT_EQ(m_detachable.readProgram(command(DoubleWord, 1)), QByteArray("\4\3\2\1", 4));
}

TEST_F(DetachableDriverTest, AsksThePortForItsStationAtEachCall) {
    attach();
    m_detachable.readProgram(command(DoubleWord, 1));
    m_port.m_station = 1;
    EXPECT_EQ(m_detachable.readProgram(command(DoubleWord, 1)), QByteArray("\xAD\xB\0\0", 4));
}

TEST_F(DetachableDriverTest, ReadsWholeDoubleWords) {
    attach();
    for (int bytes = 1; bytes <= 9; ++bytes)
        EXPECT_EQ(m_detachable.readProgram(command(Byte, bytes)).size(), (bytes + 3) / 4 * 4);
}

TEST_F(DetachableDriverTest, WritesToTheStationOfThePort) {
    attach();
    m_detachable.writeProgram(command(DoubleWord, 1), QByteArray("\7\0\0\0", 4));
    while (queueSize() > 0 || m_controller.value(Station, Slot) != 7u)
        pause(10);
    EXPECT_EQ(m_controller.value(1, Slot), 0xBADu);
}

TEST_F(DetachableDriverTest, GivesTheQueueOfThePortsStation) {
    attach();
    fillQueue(5);
    EXPECT_EQ(queueSize(), 5u);
    m_port.m_station = 1;
    EXPECT_EQ(queueSize(), 0u);
}

TEST_F(DetachableDriverTest, TakesTheQueuesSizeForASignedWord) {
    attach();
    fillQueue(0x7FFF);
    EXPECT_EQ(queueSize(), 0x7FFFu);
    fillQueue(1);
    EXPECT_EQ(queueSize(), 0xFFFF8000u);
}

TEST_F(DetachableDriverTest, ADriverWithoutAProjectHasAnEmptyQueue) {
    m_port.m_setting.string = QString::fromLatin1("COM9"); // of no link
    m_detachable.attach(m_driver.get(), &m_port);
    EXPECT_EQ(queueSize(), 0u);
}

TEST_F(DetachableDriverTest, SetsAndClearsTheProgramReadingFlag) {
    attach();
    m_detachable.setProgramReading(true);
    EXPECT_TRUE(m_probe->isProgramReading());
    m_detachable.setProgramReading(false);
    EXPECT_FALSE(m_probe->isProgramReading());
}

TEST_F(DetachableDriverTest, WaitsForTheCallThatRuns) {
    std::promise<void> line_busy, line_free;
    std::atomic<bool> is_answered(false);
    m_port.setAnswer([&](const QByteArray& request) {
        line_busy.set_value();
        line_free.get_future().wait();
        is_answered = true;
        return m_controller.answer(request);
    });
    attach();
    std::thread reader([this] { m_detachable.readProgram(command(DoubleWord, 1)); });
    line_busy.get_future().wait();
    m_detachable.detach(); // does not wait
    EXPECT_FALSE(is_answered);
    line_free.set_value();
    m_detachable.waitForCalls();
    EXPECT_TRUE(is_answered);
    m_clock.setParticipants(1);
    reader.join();
}
