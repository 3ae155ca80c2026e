// A driver that is deleted while a transfer runs.
#include "tests/support/dialogdriver.h"
#include "tests/support/timepump.h"
#include "tests/unit/dmc50v3/transfer/transferfixture.h"

#include <future>
#include <thread>

namespace {

class ExporterDeparture : public TransferFixture {
protected:
    /** In the polling thread: says that the line is busy, and waits until the
     *  driver is being deleted. */
    void holdLine() {
        if (m_held)
            return;
        m_held = true;
        m_line_busy.set_value();
        m_leaving.get_future().wait();
    }

    /** Starts a read of 32 programs that, at the third, says that the line is busy
     *  and calls @p hold. */
    void readAndHoldLine(const std::function<void()>& hold) {
        m_on_program_read = [this, hold](int number) {
            if (number == 3) {
                m_line_busy.set_value();
                hold();
            }
            return true;
        };
        choose(7, 32);
        writeTag("VVT_ENABLE1", 1);
    }

    /** The test's thread: deletes the driver as soon as the line is held. */
    void deleteDriverWhileLineIsHeld() {
        m_line_busy.get_future().wait();
        m_leaving.set_value();
        deleteDriver();
    }

    void deleteDriver() {
        attachToDriver();
        m_pump.reset(new TimePump(m_clock));
        m_driver.reset();
    }

    ~ExporterDeparture() override { m_pump.reset(); }

    bool m_held = false; // polling thread
    std::unique_ptr<TimePump> m_pump;
    std::promise<void> m_line_busy;
    std::promise<void> m_leaving;
};

} // namespace

TEST_F(ExporterDeparture, DuringAReadNeitherFileNorLogIsMade) {
    // Only the driver's going ends a transfer whose line is held.
    readAndHoldLine([this] {
        while (readTag("VVT_PROGRESS1") != 100)
            std::this_thread::yield();
    });
    m_line_busy.get_future().wait();
    deleteDriver();
    const int requests = m_port.requests().size();
    waitForWorker();
    EXPECT_EQ(m_port.requests().size(), requests);
    EXPECT_FALSE(m_stick.contains(file(7)));
    EXPECT_FALSE(m_stick.contains(QLatin1String("READ_PROG_7_ERROR.txt")));
    m_environment.pass(2000);
    EXPECT_EQ(readTag("VVT_ENABLE1"), 0);
}

TEST_F(ExporterDeparture, DuringAWriteTheTransferEndsWithoutTheDriver) {
    saveTable(7, 32);
    m_port.setAnswer([this](const QByteArray& request) {
        holdLine();
        return m_controller.answer(request);
    });
    choose(7, 32);
    writeTag("VVT_ENABLE0", 1);
    deleteDriverWhileLineIsHeld();
    waitForWorker();
    EXPECT_EQ(readTag("VVT_ENABLE0"), 0);
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
    EXPECT_FALSE(m_stick.contains(QLatin1String("WRITE_PROG_7_ERROR.txt")));
}

TEST_F(ExporterDeparture, DuringTheOperatorsChoiceNothingWaitsForTheAnswer) {
    saveTable(7, 1);
    m_stick.write(QLatin1String("PROG_7_b.txt"), "");
    DialogDriver operator_at_panel(DialogDriver::PressOk);
    operator_at_panel.m_before_answer = [this] {
        deleteDriver(); // in the GUI thread, which the question has stopped
    };
    write(7, 1);
    EXPECT_EQ(operator_at_panel.dialogsSeen(), 1);
    EXPECT_EQ(readTag("VVT_ENABLE0"), 0);
    EXPECT_TRUE(m_port.requests().isEmpty());
}

TEST_F(ExporterDeparture, AStartAfterwardsEndsByItself) {
    choose(7, 3);
    deleteDriver();
    writeTag("VVT_ENABLE1", 1);
    waitForWorker();
    EXPECT_FALSE(m_stick.contains(file(7)));
    EXPECT_TRUE(m_port.requests().isEmpty());
}

TEST_F(ExporterDeparture, AtAnyMomentOfAReadIsSafe) {
    saveTable(8, 32);
    choose(8, 32);
    writeTag("VVT_ENABLE1", 1);
    writeTag("VVT_ENABLE0", 1);
    while (m_port.requests().size() < 5)
        std::this_thread::yield();
    deleteDriver();
    const int requests = m_port.requests().size();
    waitForWorker();
    EXPECT_EQ(m_port.requests().size(), requests);
}

TEST_F(ExporterDeparture, AnExporterThatGoesFirstCutsItsTransferShort) {
    readAndHoldLine([this] { m_leaving.get_future().wait(); });
    m_line_busy.get_future().wait();
    m_pump.reset(new TimePump(m_clock));
    const qint64 start = Clock::system().msecsSinceBoot();
    m_exporter.reset();
    EXPECT_LT(Clock::system().msecsSinceBoot() - start, 5000); // after which it is terminated
    m_leaving.set_value();
    EXPECT_FALSE(m_stick.contains(file(7)));
}
