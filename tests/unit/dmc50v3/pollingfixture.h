#ifndef TESTS_UNIT_DMC50V3_POLLINGFIXTURE_H
#define TESTS_UNIT_DMC50V3_POLLINGFIXTURE_H

#include "runtime/interfaces/communicatorcommand.h"
#include "tests/support/memorycontroller.h"
#include "tests/support/scriptedport.h"
#include "tests/support/simulatedclock.h"
#include "tests/unit/dmc50v3/pollingthreadprobe.h"

#include <gtest/gtest.h>

#include <memory>

/** A polling thread over a port in memory whose cycles the test runs itself. */
class PollingFixture : public ::testing::Test {
protected:
    PollingFixture() : m_port(&m_clock) {
        for (quint32 address = 0x1000; address < 0x1000 + 120; ++address)
            m_valid[1].push_back(address);
        m_valid[1].push_back(0x2016);
        m_valid[2] = {0x10, 0x11};
        answer();
    }

    /** Every request is answered from m_controller. */
    void answer() {
        m_port.setAnswer(
            [this](const QByteArray& request) { return m_controller.answer(request); });
    }
    void stayingSilent() { m_port.setAnswer(ScriptedPort::Answer()); }

    void start() {
        m_thread.reset(new PollingThread(&m_port, &m_valid, 1, m_clock));
        m_probe.reset(new PollingThreadProbe(*m_thread));
    }

    /** Polls @p count double words of station 1 from 0x1000 on. */
    void startSession(int count) {
        start();
        m_thread->setSessionCommand(session("NA1000", count));
        m_probe->takeOverSession();
    }

    static QList<CommunicatorCommand> session(const char* address, int count) {
        QList<CommunicatorCommand> list;
        list.append(CommunicatorCommand(QString::fromLatin1(address),
                                        CommunicatorCommand::DoubleWord, count));
        return list;
    }

    void queueWrites(quint8 station, int count) {
        std::vector<AddrArg> args;
        for (int i = 0; i < count; ++i)
            args.push_back(AddrArg{0x1000 + quint32(i), quint32(i)});
        ASSERT_TRUE(m_thread->writeDWords(station, args));
    }

    /** "RN 1 50", "WN 2 25": command, station, items of each request sent. */
    std::vector<std::string> sent() const {
        std::vector<std::string> sent;
        const QList<QByteArray> requests = m_port.requests();
        for (int i = 0; i < requests.size(); ++i) {
            const QByteArray& request = requests.at(i);
            const QByteArray command = requestCommand(request);
            const int items = requestItems(request).size() / (command == "WN" ? 2 : 1);
            const QByteArray text = command + " " + QByteArray::number(requestStation(request)) +
                                    " " + QByteArray::number(items);
            sent.push_back(text.constData());
        }
        return sent;
    }

    typedef std::vector<std::string> Frames;

    SimulatedClock m_clock;
    MemoryController m_controller;
    ScriptedPort m_port;
    AddressVectorMap m_valid;
    std::unique_ptr<PollingThread> m_thread;
    std::unique_ptr<PollingThreadProbe> m_probe;
};

#endif
