#ifndef RUNTIME_DRIVERS_DMC50V3_DMC50_POLLING_THREAD_H
#define RUNTIME_DRIVERS_DMC50V3_DMC50_POLLING_THREAD_H

#include "runtime/base/clock.h"
#include "runtime/drivers/dmc50v3/sessionaddresses.h"
#include "runtime/drivers/polling/addressvector.h"
#include "runtime/drivers/polling/commerror.h"
#include "runtime/drivers/polling/dwordmap.h"
#include "runtime/drivers/polling/readqueue.h"
#include "runtime/drivers/polling/writequeue.h"

#include <QMutex>
#include <QThread>

#include <atomic>
#include <set>
#include <vector>

class AbstractDeviceInterface;

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
    void stop();

    /** Any thread: sessions. @{ */
    void setSessionCommand(const QList<CommunicatorCommand>& commands);
    void clearSessionCommand();
    void clearSessionAddrMap();
    /** The station is the default one unless the text names it. Always true; a
     *  malformed text ends the program. */
    bool parseAddrStr(const QString& text, quint32& address, quint8& station_id) const;
    /** @} */

    /** Any thread: reads. @{ */

    /** Waits out a communication error for at most the wait budget, then copies
     *  the cached values to their positions in @p data and lists the others.
     *  False when the error lasted, or when the thread was stopped. */
    bool readDataCacheMap(quint8 station_id, const AddressVector& addresses,
                          const UCharVector& indexes, QByteArray& data,
                          AddressVector& miss_addresses, UCharVector& miss_data_indexes);

    /** Queues a read of @p addresses and waits for at most the wait budget until
     *  it has been made. */
    bool readOnceData(quint8 station_id, QByteArray& data, const AddressVector& addresses,
                      const UCharVector& indexes);

    void pushReadAddresses(quint8 station_id, const AddressVector& addresses);
    bool readAddrQueueMapIsEmpty() const;
    bool getDWordFromDataCacheMap(quint8 station_id, quint32 address, quint32& value) const;
    bool addrInDataCache(quint8 station_id, quint32 address) const;
    bool addrInReadOnceDataMap(quint8 station_id, quint32 address) const;
    void insertDWordToReadOnceDataMap(quint8 station_id, quint32 address, quint32 value);
    /** @} */

    /** Any thread: writes. False, and nothing is queued, while the last exchange
     *  with any controller failed; true means queued, not yet written. @{ */
    bool writeDWord(quint8 station_id, const AddrArg& arg);
    bool writeDWords(quint8 station_id, const std::vector<AddrArg>& args);
    int getAddrArgQueueSize(quint8 station_id) const;
    bool addrArgQueueMapIsEmpty() const;
    /** @} */

    /** Any thread: the communication error. @{ */
    void setCommError(const QString& text);
    bool hasError() const;
    QString getLastError() const;
    void clearError();
    /** @} */

    /** Any thread: the request bits of m_flags. @{ */
    enum Flag { NewSession = 1, ClearedSession = 2 };
    void setFlag(quint8 bits);
    quint8 getFlag() const;
    void clearFlag(quint8 bits);
    /** @} */

    /** Any thread: stations that are kept set up for fast answers. @{ */
    void setLowLatency(const std::set<quint8>& stations);
    int numOfLowLatencyStation() const;
    void initLowLatencyAddrArgs();
    void initLowLatencyStations();
    void kickLowLatencyWatchDog();
    /** @} */

    /** Longest time that a caller waits for the line, ms. */
    qint64 waitBudgetMsecs() const;
    quint32 frameIntervalMsecs() const { return m_frame_interval_ms; }
    qint64 timeoutMsecs() const { return m_timeout_ms; }

protected:
    void run() override;

private:
    friend class PollingThreadProbe; // the tests' door to the steps of a cycle

    // One cycle (dmc50_polling_thread.cpp); this thread only.
    void prepare();
    void cycle();
    void takeOverSession();
    void sessionAddrMapToCacheAddrMap();
    void clearDataCacheMap();
    bool pollingScan();
    bool pollRun(quint8 station_id, const quint32* addresses, int count);

    // Exchanges with a controller (polling_exchange.cpp); this thread only.
    void exchange(int frame_length);
    bool exchangeRead(quint8 station_id, const quint32* addresses, int count);
    bool exchangeWrite(quint8 station_id, const std::vector<AddrArg>& batch);
    int readRspUntilLF();
    void resetRspBuf();
    quint8 getStationIdFromRsp() const;
    quint8 getEndCodeFromRsp() const;
    bool checkReadRsp(quint8 station_id, quint32 start_address);
    bool checkWriteRsp(quint8 station_id, quint32 address);
    bool checkRsp(quint8 station_id, const char* prefix_format, quint32 address,
                  const char* short_frame_text);

    // Queued reads and writes (polling_queues.cpp); this thread only.
    void readAddrQueueMapToReadOnceDataMap();
    AddressVector takeUncachedAddresses(quint8 station_id, AddressVector& queue);
    void fetchRun(quint8 station_id, const quint32* addresses, int count);
    void readRspToDataCacheMap(quint8 station_id, const quint32* addresses, int num_of_addresses);
    void readRspToReadOnceDataMap(quint8 station_id, const quint32* addresses,
                                  int num_of_addresses);
    void storeReply(DWordMap& map, quint8 station_id, const quint32* addresses,
                    int num_of_addresses);
    bool addrArgQueueToDMC50();
    bool sendBatch(quint8 station_id, const std::vector<AddrArg>& batch);

    // Low-latency care (polling_low_latency.cpp); this thread only.
    void startLowLatencyCare();
    void checkLowLatencyWhenDue();
    void renewLowLatencyWhenDue();
    bool checkLowLatency();

    AbstractDeviceInterface* const m_interface;          // the host's
    const AddressVectorMap* const m_valid_addresses_map; // the driver's; constant while we run
    Clock& m_clock;                                      // the owner's
    const quint8 m_default_station_id;                   // > 0
    const quint32 m_frame_interval_ms;                   // pause before every request
    const qint64 m_timeout_ms;                           // response timeout
    const quint32 m_retries;                             // further attempts of a request

    std::atomic<quint8> m_stop;

    mutable QMutex m_flags_mutex; // guards m_flags
    quint8 m_flags;

    CommError m_error;
    SessionAddresses m_session;
    ReadQueue m_read_queue;
    WriteQueue m_write_queue;
    DWordMap m_data_cache; // of session addresses; kept fresh
    DWordMap m_read_once;  // results of queued reads; taken by their readers

    mutable QMutex m_low_latency_mutex; // guards the stations; held across their exchanges
    std::set<quint8> m_low_latency_stations;
    std::vector<AddrArg> m_low_latency_addr_args; // constant once filled by initLowLatencyAddrArgs

    // This thread only, from here on.
    AddressVectorMap m_cache_addresses; // what the scan polls; ascending, unique
    std::vector<char> m_request_buf;    // CPLBufferSize
    std::vector<char> m_rsp_buf;        // CPLBufferSize
    int m_rsp_len;                      // valid bytes of m_rsp_buf
    std::vector<AddrArg> m_batch;       // pairs of the write frame being sent
    qint64 m_low_latency_init_ms;       // last set-up of the low-latency stations
    qint64 m_low_latency_check_ms;      // last check of them
    bool m_check_low_latency;           // the check is due
};

#endif
