#ifndef TESTS_UNIT_DMC50V3_DRIVERFIXTURE_H
#define TESTS_UNIT_DMC50V3_DRIVERFIXTURE_H

#include "tests/support/memorycontroller.h"
#include "tests/support/scriptedport.h"
#include "tests/support/simulatedclock.h"
#include "tests/support/testproject.h"
#include "tests/unit/dmc50v3/driverprobe.h"

#include <gtest/gtest.h>

#include <memory>

/** A driver on a project and a controller in memory, with its real polling
 *  thread on simulated time: the test's thread is the host's. */
class DriverFixture : public ::testing::Test {
protected:
    DriverFixture() : m_port(&m_clock) { answer(); }

    ~DriverFixture() override { deleteDriver(); }

    void answer() {
        m_port.setAnswer(
            [this](const QByteArray& request) { return m_controller.answer(request); });
    }
    void staySilent() { m_port.setAnswer(ScriptedPort::Answer()); }

    /** Link 1 on COM2, default station 1, with @p addresses (blanks between). */
    void project(const char* addresses) {
        m_project.create(1, QString::fromLatin1(addresses).split(QLatin1Char(' ')));
        m_driver.reset(new DriverDMC50v3(m_clock));
        m_probe.reset(new DriverProbe(*m_driver));
    }

    /** The polling thread runs alone from then on, so that it can stop. */
    void deleteDriver() {
        m_clock.setParticipants(1);
        m_probe.reset();
        m_driver.reset();
    }

    QByteArray read(const char* address, int type, int count) {
        return m_driver->read(&m_port,
                              CommunicatorCommand(QString::fromLatin1(address), type, count));
    }
    bool write(const char* address, int type, int count, const QByteArray& data) {
        return m_driver->write(
            &m_port, CommunicatorCommand(QString::fromLatin1(address), type, count), data);
    }

    /** Lets simulated time pass on the host's side. */
    void pause(quint32 msecs) { m_clock.sleepMsecs(msecs); }

    static const int Bit = CommunicatorCommand::Bit;
    static const int Byte = CommunicatorCommand::Byte;
    static const int Word = CommunicatorCommand::Word;
    static const int DoubleWord = CommunicatorCommand::DoubleWord;

    SimulatedClock m_clock{2}; // the polling thread and the test
    MemoryController m_controller;
    ScriptedPort m_port;
    TestProject m_project;
    std::unique_ptr<DriverDMC50v3> m_driver;
    std::unique_ptr<DriverProbe> m_probe;
};

#endif
