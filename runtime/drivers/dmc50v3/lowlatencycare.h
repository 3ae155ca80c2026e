#ifndef RUNTIME_DRIVERS_DMC50V3_LOWLATENCYCARE_H
#define RUNTIME_DRIVERS_DMC50V3_LOWLATENCYCARE_H

#include "runtime/drivers/addrarg.h"

#include <QMutex>

#include <set>
#include <vector>

class Clock;
class CommError;
class ControllerLine;
class WriteQueue;

/** Stations that are kept set up for fast answers: set up at start and every 9
 *  minutes, checked every 30 seconds until all report the expected value. */
class LowLatencyCare {
public:
    LowLatencyCare(Clock& clock, ControllerLine& line, CommError& error, WriteQueue& writes);

    /** Any thread. @{ */
    void setLowLatency(const std::set<quint8>& stations);
    int numOfLowLatencyStation() const;
    /** @} */

    /** Fills the set-up; before any of the operations below. */
    void initLowLatencyAddrArgs();

    /** Queue the writes of every station, the whole set-up or its first pair;
     *  refused while the link is in error. Any thread. @{ */
    void initLowLatencyStations();
    void kickLowLatencyWatchDog();
    /** @} */

    /** The polling thread only: at its start, and the two steps of each cycle. @{ */
    void start();
    void checkWhenDue();
    void renewWhenDue();
    /** @} */

    /** Reads the check value of every station, without retries. The polling thread
     *  only. */
    bool checkLowLatency();

private:
    void setUpNow();

    Clock& m_clock;
    ControllerLine& m_line;
    CommError& m_error;
    WriteQueue& m_writes;

    mutable QMutex m_mutex; // guards m_stations; held across their exchanges
    std::set<quint8> m_stations;
    std::vector<AddrArg> m_low_latency_addr_args; // constant once filled

    // The polling thread only, from here on.
    qint64 m_low_latency_init_ms;  // last set-up
    qint64 m_low_latency_check_ms; // last check, or the set-up that it follows
    bool m_check_low_latency;      // the check is due
};

#endif
