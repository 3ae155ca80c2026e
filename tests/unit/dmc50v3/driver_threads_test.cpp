// Two threads call a driver while it polls, as the host and a program transfer
// do. The sanitizer builds look for races; here every value must be right.
#include "tests/support/acceleratedclock.h"
#include "tests/unit/dmc50v3/driverfixture.h"

#include <cstring>
#include <thread>

namespace {

class DriverThreads : public DriverFixture {
protected:
    DriverThreads() { m_port.m_timeout = 3600000; } // no time-out may come of a loaded machine
    ~DriverThreads() override { m_driver.reset(); } // its polling thread looks at the clock

    void fastProject(const QString& tags) {
        project(tags.toLatin1().constData());
        m_driver.reset(new DriverDMC50v3(m_fast_clock));
        m_probe.reset(new DriverProbe(*m_driver));
        ASSERT_EQ(read("NA10", DoubleWord, 1).size(), 4); // makes the polling thread
    }

    AcceleratedClock m_fast_clock;
};

/** The value that address @p address of the test's controller holds. */
quint32 valueOf(quint32 address) {
    return address * 0x01010101u + 7;
}

} // namespace

TEST_F(DriverThreads, ThePollingThreadRunsAtThePriorityOfItsHost) {
    fastProject(QString::fromLatin1("NA10"));
    EXPECT_TRUE(m_probe->thread()->isRunning());
    EXPECT_EQ(m_probe->thread()->priority(), QThread::InheritPriority);
}

TEST_F(DriverThreads, TwoCallersAlwaysGetTheirOwnValues) {
    QString tags;
    for (quint32 address = 0x10; address < 0x40; ++address) {
        tags += QString::fromLatin1("NA%1 ").arg(address, 0, 16);
        m_controller.setValue(1, address, valueOf(address));
    }
    fastProject(tags.trimmed());
    QList<CommunicatorCommand> session;
    session.append(CommunicatorCommand(QString::fromLatin1("NA10"), DoubleWord, 16));
    m_driver->setSessionCommand(session);

    std::atomic<int> wrong{0};
    // Each caller has addresses of its own: a value read once is its reader's.
    const auto caller = [&](quint32 first) {
        for (int i = 0; i < 200; ++i) {
            const quint32 address = first + quint32(i % 16);
            const QByteArray data = m_driver->readDWords(1, address, 1);
            quint32 value = 0;
            if (data.size() == 4)
                std::memcpy(&value, data.constData(), 4);
            wrong += value != valueOf(address);
        }
    };
    std::thread exporter(caller, 0x20);
    std::thread host(caller, 0x30);
    exporter.join();
    host.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_FALSE(m_driver->hasError());
}

TEST_F(DriverThreads, WritesReadsAndSessionsFromTwoThreadsKeepTheDriverSound) {
    fastProject(QString::fromLatin1("NA10 NA11 NA12 NA13"));

    std::thread writer([&] {
        for (int i = 0; i < 200; ++i) {
            const QByteArray data(4, char(i));
            EXPECT_TRUE(write("NA10", DoubleWord, 1, data));
            EXPECT_FALSE(read("WRITE_QUE_SIZE0", Word, 1).isEmpty());
            m_fast_clock.sleepMsecs(5);
        }
    });
    std::thread screens([&] {
        QList<CommunicatorCommand> session;
        for (int i = 0; i < 100; ++i) {
            session.clear();
            session.append(
                CommunicatorCommand(QString::fromLatin1(i % 2 ? "NA11" : "NA12"), DoubleWord, 2));
            m_driver->setSessionCommand(session);
            m_fast_clock.sleepMsecs(15);
            m_driver->clearSessionCommand();
            EXPECT_TRUE(m_driver->getLastError().isEmpty());
        }
    });
    writer.join();
    screens.join();
    while (m_controller.value(1, 0x10) != 0xC7C7C7C7u) // the last write, when it is out
        m_fast_clock.sleepMsecs(100);
    EXPECT_FALSE(m_driver->hasError());
}
