#ifndef TESTS_UNIT_DMC50V3_POLLINGTHREADPROBE_H
#define TESTS_UNIT_DMC50V3_POLLINGTHREADPROBE_H

#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"

/** Runs the steps of a polling thread one by one, without a thread. */
class PollingThreadProbe {
public:
    explicit PollingThreadProbe(PollingThread& thread) : m_thread(thread) {
        m_thread.m_low_latency.start();
    }

    void run() { m_thread.run(); }
    void cycle() { m_thread.cycle(); }
    bool pollingScan() { return m_thread.m_scan.run(m_thread.m_cache_addresses); }
    bool sendWrites() { return m_thread.m_writer.sendAll(); }
    void fetchReads() { m_thread.m_fetcher.fetchAll(); }
    void takeOverSession() { m_thread.takeOverSession(); }
    const AddressVectorMap& cacheAddresses() const { return m_thread.m_cache_addresses; }
    DWordMap& cache() { return m_thread.m_data.cache(); }
    CPLLine& line() { return m_thread.m_line; }

private:
    PollingThread& m_thread;
};

#endif
