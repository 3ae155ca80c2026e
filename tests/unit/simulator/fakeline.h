#ifndef TESTS_UNIT_SIMULATOR_FAKELINE_H
#define TESTS_UNIT_SIMULATOR_FAKELINE_H

#include "simulator/lineclock.h"
#include "simulator/lineport.h"

#include <vector>

/** Time that passes only by sleeping. One thread. */
class FakeLineClock : public simulator::LineClock {
public:
    qint64 now() override { return m_now; }
    void sleepUntil(qint64 time) override {
        m_now = time > m_now ? time : m_now;
        ++m_sleeps;
    }

    void advance(qint64 nanoseconds) { m_now += nanoseconds; }
    int sleeps() const { return m_sleeps; }

private:
    qint64 m_now = 5000000000;
    int m_sleeps = 0;
};

/** A port that notes what is written and when. */
class RecordingPort : public simulator::LinePort {
public:
    struct Written {
        qint64 time;
        QByteArray bytes;
    };

    explicit RecordingPort(simulator::LineClock& clock) : m_clock(clock) {}

    Result<void> open() override {
        m_open = true;
        return {};
    }
    void close() override { m_open = false; }
    bool isOpen() const override { return m_open; }
    QString path() const override { return QString::fromLatin1("recording"); }
    QByteArray read(int) override { return QByteArray(); }
    void write(const QByteArray& bytes) override { m_written.push_back({m_clock.now(), bytes}); }

    const std::vector<Written>& written() const { return m_written; }

    /** All bytes written since the last call. */
    QByteArray takeBytes() {
        QByteArray all;
        for (const Written& part : m_written)
            all += part.bytes;
        m_written.clear();
        return all;
    }

private:
    simulator::LineClock& m_clock;
    bool m_open = true;
    std::vector<Written> m_written;
};

#endif
