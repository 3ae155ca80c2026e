#ifndef TESTS_SUPPORT_TIMEPUMP_H
#define TESTS_SUPPORT_TIMEPUMP_H

#include "tests/support/simulatedclock.h"

#include <atomic>
#include <chrono>
#include <thread>

/** While it lives, simulated time runs by itself, whoever sleeps or works: for
 *  the end of threads, who then cannot say that they sleep no more. */
class TimePump {
public:
    explicit TimePump(SimulatedClock& clock) : m_stop(false) {
        clock.setParticipants(0);
        m_thread = std::thread([this, &clock] {
            while (!m_stop) {
                clock.advance(10);
                std::this_thread::sleep_for(std::chrono::microseconds(100));
            }
        });
    }
    ~TimePump() {
        m_stop = true;
        m_thread.join();
    }
    TimePump(const TimePump&) = delete;
    TimePump& operator=(const TimePump&) = delete;

private:
    std::atomic<bool> m_stop;
    std::thread m_thread;
};

#endif
