#ifndef TESTS_UNIT_DMC50V3_POLLINGTHREADPROBE_H
#define TESTS_UNIT_DMC50V3_POLLINGTHREADPROBE_H

#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"

/** Runs the steps of a polling thread one by one, without a thread. */
class PollingThreadProbe {
public:
    explicit PollingThreadProbe(PollingThread& thread) : m_thread(thread) { m_thread.prepare(); }

    void cycle() { m_thread.cycle(); }
    bool pollingScan() { return m_thread.pollingScan(); }
    bool sendWrites() { return m_thread.addrArgQueueToDMC50(); }
    void fetchReads() { m_thread.readAddrQueueMapToReadOnceDataMap(); }
    bool checkLowLatency() { return m_thread.checkLowLatency(); }
    void takeOverSession() { m_thread.takeOverSession(); }
    const AddressVectorMap& cacheAddresses() const { return m_thread.m_cache_addresses; }

    /** Judges @p response as the reply to a read or a write. @{ */
    bool checkReadRsp(const QByteArray& response, quint8 station_id, quint32 address) {
        setResponse(response);
        return m_thread.checkReadRsp(station_id, address);
    }
    bool checkWriteRsp(const QByteArray& response, quint8 station_id, quint32 address) {
        setResponse(response);
        return m_thread.checkWriteRsp(station_id, address);
    }
    /** @} */

    int readRspUntilLF() { return m_thread.readRspUntilLF(); }
    void setResponse(const QByteArray& response) {
        m_thread.resetRspBuf();
        m_thread.m_rsp_len = response.size();
        for (int i = 0; i < response.size(); ++i)
            m_thread.m_rsp_buf[std::size_t(i)] = response.at(i);
    }

private:
    PollingThread& m_thread;
};

#endif
