#ifndef RUNTIME_DRIVERS_DMC50V3_DMC50_POLLING_THREAD_H
#define RUNTIME_DRIVERS_DMC50V3_DMC50_POLLING_THREAD_H

#include "runtime/base/clock.h"
#include "runtime/drivers/dmc50v3/cplline.h"
#include "runtime/drivers/dmc50v3/lowlatencycare.h"
#include "runtime/drivers/polling/commerror.h"
#include "runtime/drivers/polling/linksettings.h"
#include "runtime/drivers/polling/polleddata.h"
#include "runtime/drivers/polling/pollingscan.h"
#include "runtime/drivers/polling/readfetcher.h"
#include "runtime/drivers/polling/runreader.h"
#include "runtime/drivers/polling/sessionaddresses.h"
#include "runtime/drivers/polling/threadrequests.h"
#include "runtime/drivers/polling/writequeue.h"
#include "runtime/drivers/polling/writesender.h"

#include <QList>
#include <QThread>

class AbstractDeviceInterface;
class CommunicatorCommand;

/** The one thread that talks to the controllers. It owns the port while it
 *  runs; other threads put work into its queues and take results out of its
 *  maps.
 *
 *  Locks: each shared member has its own. Two are held at once in two places
 *  only: the read queue's, then the data maps' in turn (a fetch of queued
 *  reads); the low-latency stations', then the error's and the write queue's. */
class PollingThread : public QThread {
    Q_OBJECT

public:
    /** @p port, @p valid_addresses and @p clock must outlive the thread. A null
     *  one, or default station 0, ends the program. */
    PollingThread(AbstractDeviceInterface* port, const AddressVectorMap* valid_addresses,
                  quint8 default_station_id, Clock& clock = Clock::system());

    /** The loop ends at its next check; the owner then waits for the thread. */
    void stop() { m_requests.stop(); }

    /** Any thread: sessions. @{ */
    void setSessionCommand(const QList<CommunicatorCommand>& commands);
    void clearSessionCommand() { setFlag(ClearedSession); }
    void clearSessionAddrMap() { m_session.clear(); }
    /** The station is the default one unless the text names it. Always true; a
     *  malformed text ends the program. */
    bool parseAddrStr(const QString& text, quint32& address, quint8& station_id) const;
    /** @} */

    /** Any thread: reads; see PolledData. @{ */
    bool readDataCacheMap(quint8 station_id, const AddressVector& addresses,
                          const UCharVector& indexes, QByteArray& data,
                          AddressVector& miss_addresses, UCharVector& miss_data_indexes) {
        return m_data.readDataCacheMap(station_id, addresses, indexes, data, miss_addresses,
                                       miss_data_indexes);
    }
    bool readOnceData(quint8 station_id, QByteArray& data, const AddressVector& addresses,
                      const UCharVector& indexes) {
        return m_data.readOnceData(station_id, data, addresses, indexes);
    }
    void pushReadAddresses(quint8 station_id, const AddressVector& addresses) {
        m_data.queue().push(station_id, addresses);
    }
    bool readAddrQueueMapIsEmpty() const { return m_data.queue().isEmpty(); }
    bool getDWordFromDataCacheMap(quint8 station_id, quint32 address, quint32& value) const {
        return m_data.cache().find(station_id, address, value);
    }
    bool addrInDataCache(quint8 station_id, quint32 address) const {
        return m_data.cache().contains(station_id, address);
    }
    bool addrInReadOnceDataMap(quint8 station_id, quint32 address) const {
        return m_data.readOnce().contains(station_id, address);
    }
    void insertDWordToReadOnceDataMap(quint8 station_id, quint32 address, quint32 value) {
        m_data.readOnce().insert(station_id, address, value);
    }
    /** @} */

    /** Any thread: writes; see WriteQueue. @{ */
    bool writeDWord(quint8 station_id, const AddrArg& arg) {
        return m_write_queue.push(station_id, &arg, 1);
    }
    bool writeDWords(quint8 station_id, const std::vector<AddrArg>& args) {
        return m_write_queue.push(station_id, args.data(), args.size());
    }
    int getAddrArgQueueSize(quint8 station_id) const { return m_write_queue.size(station_id); }
    bool addrArgQueueMapIsEmpty() const { return m_write_queue.isEmpty(); }
    /** @} */

    /** Any thread: the communication error. @{ */
    void setCommError(const QString& text) { m_error.set(text); }
    bool hasError() const { return m_error.isSet(); }
    QString getLastError() const { return m_error.text(); }
    void clearError() { m_error.clear(); }
    /** @} */

    /** Any thread: request bits. @{ */
    enum Flag { NewSession = 1, ClearedSession = 2 };
    void setFlag(quint8 bits) { m_requests.setFlag(bits); }
    quint8 getFlag() const { return m_requests.getFlag(); }
    void clearFlag(quint8 bits) { m_requests.clearFlag(bits); }
    /** @} */

    /** Stations that are kept set up for fast answers; see LowLatencyCare. @{ */
    void setLowLatency(const std::set<quint8>& stations) { m_low_latency.setLowLatency(stations); }
    int numOfLowLatencyStation() const { return m_low_latency.numOfLowLatencyStation(); }
    void initLowLatencyAddrArgs() { m_low_latency.initLowLatencyAddrArgs(); }
    void initLowLatencyStations() { m_low_latency.initLowLatencyStations(); }
    void kickLowLatencyWatchDog() { m_low_latency.kickLowLatencyWatchDog(); }
    /** @} */

protected:
    void run() override;

private:
    friend class PollingThreadProbe; // the tests' door to the steps of a cycle

    void cycle();
    void takeOverSession();

    const AddressVectorMap* const m_valid_addresses_map; // the driver's; constant while we run
    Clock& m_clock;                                      // the owner's
    const quint8 m_default_station_id;                   // > 0
    const LinkSettings m_settings;

    // Any thread.
    CommError m_error;
    ThreadRequests m_requests;
    SessionAddresses m_session;
    PolledData m_data;
    WriteQueue m_write_queue;

    // This thread only, from here on, but for what LowLatencyCare opens to all.
    CPLLine m_line;
    RunReader m_reader;
    WriteSender m_writer;
    ReadFetcher m_fetcher;
    PollingScan m_scan;
    LowLatencyCare m_low_latency;
    AddressVectorMap m_cache_addresses; // what the scan polls; ascending, unique
};

#endif
