#ifndef SIMULATOR_STATION_H
#define SIMULATOR_STATION_H

#include "simulator/frame.h"
#include "simulator/movingvalue.h"

#include <map>
#include <mutex>

namespace simulator {

/** Reads 200 while the four low-latency settings stand, else 0; writing to it
 *  changes nothing. */
constexpr quint32 LowLatencyCheckAddress = 0x2016;

/** One simulated controller: its memory of double words and its answers. A new
 *  one holds the factory's furnace programs; addresses never written read 0.
 *  Any thread may call it. Times are milliseconds since the line was made. */
class Station {
public:
    explicit Station(quint8 id);
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;

    quint8 id() const { return m_id; }

    quint32 read(quint32 address, qint64 now) const;

    /** Stores a value; a value that moved until now stands still. */
    void write(quint32 address, quint32 value);

    /** Makes the value at @p address move. */
    void setMoving(quint32 address, const MovingValue& moving);

    /** Carries a request out and answers it. */
    Reply answer(const Request& request, qint64 now);

    /** All stored double words, moving ones as they are now. */
    std::map<quint32, quint32> snapshot(qint64 now) const;

private:
    quint32 readLocked(quint32 address, qint64 now) const;
    void writeLocked(quint32 address, quint32 value);

    const quint8 m_id;
    mutable std::mutex m_mutex; // guards all below
    std::map<quint32, quint32> m_memory;
    std::map<quint32, MovingValue> m_moving;
};

} // namespace simulator

#endif
