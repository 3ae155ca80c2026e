#ifndef TESTS_CAMPAIGN_WIRE_H
#define TESTS_CAMPAIGN_WIRE_H

#include "simulator/transmission.h"

#include <deque>
#include <map>

namespace campaign {

/** One pair of wires. Transmissions never overlap: one that is due while another is
 *  under way follows it. One that could then not end before its limit is lost, as
 *  in a collision. Times are microseconds. */
class Wire {
public:
    explicit Wire(int baud) : m_baud(baud) {}

    /** The host sends from @p now on, or as soon as the wire is free. Returns when its
     *  last character is through. */
    qint64 send(qint64 now, int characters);

    /** A transmission begins at @p due, or as soon as the wire is free. */
    void post(qint64 due, qint64 limit, const simulator::Transmission& transmission);

    /** What comes at @p usecs without taking any time on the wire. */
    void arrive(qint64 usecs, const QByteArray& bytes);

    /** Takes the next bytes that have come by @p now; empty when there are none. */
    QByteArray take(qint64 now);

    /** When the next bytes can come. */
    qint64 nextEvent() const;

    qint64 timeOf(int characters) const;

private:
    struct Posted {
        qint64 limit;
        simulator::Transmission transmission;
    };
    void transmit(qint64 due, const Posted& posted);
    void proceed(qint64 now);

    const int m_baud;
    qint64 m_free = 0;                                   // when the last character is through
    std::multimap<qint64, Posted> m_posted;              // by due time
    std::deque<std::pair<qint64, QByteArray>> m_arrived; // by time, which may lie ahead
};

} // namespace campaign

#endif
