#ifndef TESTS_CAMPAIGN_VIRTUALLINE_H
#define TESTS_CAMPAIGN_VIRTUALLINE_H

#include "simulator/framereader.h"
#include "tests/campaign/controller.h"
#include "tests/campaign/faultlog.h"
#include "tests/campaign/faultyreply.h"
#include "tests/campaign/journal.h"
#include "tests/campaign/scenario.h"
#include "tests/campaign/virtualtime.h"
#include "tests/campaign/wire.h"

namespace campaign {

/** The line of a scenario with its controllers, in virtual time. A station answers
 *  in the order in which it was asked, and its whole answer comes within the
 *  response timeout after the request was handed over: later ones could not be told
 *  from the answers to later requests, as frames carry no number. */
class VirtualLine {
public:
    VirtualLine(const Scenario& scenario, VirtualTime& time, WriteSink sink);

    /** The host hands bytes over now. */
    void send(const QByteArray& bytes);

    /** The next bytes that have come by now; empty when there are none. */
    QByteArray take();

    /** When bytes can come next, or the adapter goes or comes. */
    qint64 nextEvent() const;

    bool isPlugged() const;
    /** How often the adapter has been pulled so far. */
    int unplugs() const;

    /** The end of all faults, also of those that last. */
    void calm();

    Controller& controller(quint8 station) { return *m_controllers.at(station); }
    const FaultLog& faults() const { return m_faults; }
    Journal& journal() { return m_journal; }
    quint64 requests() const { return m_requests; }

    /** True if a station has sent exactly these bytes as an answer of late, and no
     *  damage to another answer has made the same of it. */
    bool isGenuine(const QByteArray& frame) const;

private:
    void hear(const QByteArray& frame);
    void answer(const QByteArray& frame, const simulator::Request& request, qint64 heard,
                const LineFault* fault);
    const LineFault* nextFault();
    void strike(const LineFault& fault, Controller& controller);
    void unplug(qint64 from, int msecs);
    void transmit(quint8 station, qint64 heard, simulator::Transmission transmission);
    QByteArray foreignAnswer(const simulator::Request& request, qint64 heard);
    simulator::Transmission inPieces(const QByteArray& frame);
    QByteArray withCarried(const QByteArray& carried, const QByteArray& bytes);
    qint64 limitFromNow() const;
    void noteGenuine(quint8 station, const QByteArray& frame);

    const Scenario& m_scenario;
    VirtualTime& m_time;
    const WriteSink m_sink;
    Dice m_dice;
    std::map<quint8, std::unique_ptr<Controller>> m_controllers;
    Wire m_wire;
    simulator::FrameReader m_reader;
    Journal m_journal;
    FaultLog m_faults;
    std::size_t m_next_fault = 0; // of the script
    bool m_calm = false;
    quint64 m_requests = 0;
    std::map<quint8, qint64> m_busy_until;     // stations that still answer
    std::map<quint8, QByteArray> m_last_frame; // of each station, as it should be
    std::deque<QByteArray> m_genuine;          // the last of all stations, oldest first
    QByteArray m_forged;                       // the last one
    QByteArray m_carried;                      // the rest of a cut reply
    quint8 m_carried_station = 0;              // whose it is
    bool m_carried_replaces = false;           // as many bytes of the next one
    qint64 m_carried_until = 0;                // it is lost from then on
    qint64 m_unplugged = 0, m_plugged = 0;     // the last time
    int m_unplugs = 0;
};

} // namespace campaign

#endif
