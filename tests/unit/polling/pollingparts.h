#ifndef TESTS_UNIT_POLLING_POLLINGPARTS_H
#define TESTS_UNIT_POLLING_POLLINGPARTS_H

#include "runtime/drivers/polling/polleddata.h"
#include "runtime/drivers/polling/runreader.h"
#include "runtime/drivers/polling/threadrequests.h"
#include "tests/support/memoryline.h"
#include "tests/support/scheduledclock.h"

#include <gtest/gtest.h>

/** The parts around a polling thread's readers, over a line in memory. */
class PollingParts : public ::testing::Test {
protected:
    static const qint64 Budget = 3000;

    static AddressVector ascending(quint32 first, int count) {
        AddressVector addresses;
        for (int i = 0; i < count; ++i)
            addresses.push_back(first + quint32(i));
        return addresses;
    }

    /** What was asked of the line since the last call, pauses left out. */
    MemoryLine::Log requested() {
        MemoryLine::Log requests;
        for (const std::string& entry : m_line.takeLog()) {
            if (entry != "pause")
                requests.push_back(entry);
        }
        return requests;
    }

    typedef MemoryLine::Log Requests;

    ScheduledClock m_clock;
    CommError m_error;
    ThreadRequests m_requests;
    MemoryLine m_line{m_error};
    RunReader m_reader{m_line, m_error};
    PolledData m_data{m_clock, m_error, m_requests, Budget};
};

#endif
