#ifndef TESTS_CAMPAIGN_WRITEBOOK_H
#define TESTS_CAMPAIGN_WRITEBOOK_H

#include "simulator/frame.h"
#include "tests/campaign/figures.h"

#include <QString>

#include <deque>
#include <map>
#include <unordered_map>

namespace campaign {

/** Follows every write from the caller to the controller. Each value is written by
 *  one write only, so a controller's memory tells which. All operations return what
 *  is wrong, empty when nothing is. */
class WriteBook {
public:
    WriteBook(int retries, Figures& figures) : m_retries(retries), m_figures(figures) {}

    /** A caller asked for it while the link was in error, so it must not be made. */
    void refused(quint32 value);
    /** It was taken into the driver's queue. */
    void queued(quint8 station, quint32 address, quint32 value);

    /** The driver sends a request, any. */
    QString requested(const simulator::Request& request);
    /** The write request was answered well, or its last attempt was not. */
    QString answered(bool good);
    /** A controller has stored a value. */
    QString applied(quint8 station, quint32 address, quint32 value);

    /** Nothing waits and nothing is being sent. */
    bool isIdle() const;

private:
    enum class State { Refused, Queued, BeingSent, Confirmed, Failed };
    struct Write {
        quint8 station;
        quint32 address;
        State state;
        int applied; // how often
    };
    QString begin(quint8 station, const std::vector<quint32>& values);
    QString endBatch(State state);

    const int m_retries;
    Figures& m_figures;
    std::unordered_map<quint32, Write> m_writes;    // by value
    std::map<quint8, std::deque<quint32>> m_queues; // values, by station
    std::vector<quint32> m_batch;                   // values being sent
    simulator::Request m_request;                   // with which they are sent
    int m_attempts = 0;                             // of the batch; 0: none is sent
};

} // namespace campaign

#endif
