#ifndef TESTS_UNIT_LINE_STATIONSCHANNEL_H
#define TESTS_UNIT_LINE_STATIONSCHANNEL_H

#include "host/line/bytechannel.h"
#include "tests/support/memorycontroller.h"

#include <QList>

#include <algorithm>
#include <functional>
#include <map>

class Clock;

/** Stations on a line in virtual time: who waits for a byte moves the clock. They
 *  answer side by side, each in the order in which it was asked. One thread. */
class StationsChannel : public host::ByteChannel {
public:
    struct Station {
        int delay_ms = 40; // from the request to the whole reply; -1: silent
        std::function<QByteArray(const QByteArray& reply)> changed; // on the way; may be null
        qint64 busy_until = 0;
    };

    explicit StationsChannel(Clock& clock) : m_clock(clock) {}

    std::map<int, Station> stations;
    MemoryController memory; // of all of them
    QList<QByteArray> sent;
    bool is_lost = false;
    bool is_half_duplex = false; // a reply on its way is lost when the next request goes out

    /** Bytes that are on the line at @p time, whoever sends them. */
    void put(qint64 time, const QByteArray& bytes) { m_pieces.emplace(time, bytes); }

    Result<void> open() override;
    void close() override {}
    Result<int> read(char* buffer, int max, int timeout_ms) override;
    Result<void> write(const char* buffer, int length, int timeout_ms) override;
    QByteArray discard() override;
    void cancel() override { m_cancelled = true; }
    bool isCancelled() const override { return m_cancelled; }
    QString name() const override { return QStringLiteral("/dev/stations"); }

private:
    Clock& m_clock;
    std::multimap<qint64, QByteArray> m_pieces; // by the time of their last byte
    bool m_cancelled = false;
};

#endif
