#ifndef TESTS_CAMPAIGN_CONTROLLER_H
#define TESTS_CAMPAIGN_CONTROLLER_H

#include "simulator/station.h"
#include "tests/campaign/dice.h"
#include "tests/campaign/valuehistory.h"

#include <functional>
#include <memory>
#include <unordered_map>

namespace campaign {

/** Told of every double word that a request writes. */
using WriteSink = std::function<void(quint8 station, quint32 address, quint32 value)>;

/** A simulated controller that remembers what its memory has held. Its double words
 *  count up by themselves, each from a number of its own, until they are written.
 *  Times are microseconds. */
class Controller {
public:
    Controller(quint8 id, const std::vector<quint32>& addresses, const Dice& dice, qint64 now);

    quint8 id() const { return m_id; }

    /** Carries out what is heard at @p usecs. */
    simulator::Reply answer(const simulator::Request& request, qint64 usecs, const WriteSink& sink);

    /** The memory is as it was at first. */
    void restart(qint64 usecs);

    /** The process changes one double word: it counts again. */
    void stir(qint64 usecs);

    /** True if @p address held @p value at a moment between the two times; also for
     *  addresses that are not watched. */
    bool held(quint32 address, quint32 value, qint64 from, qint64 to) const;

    qint64 offUntil() const { return m_off_until; }
    void switchOff(qint64 until) { m_off_until = until; }

private:
    void set(quint32 address, const Course& course, qint64 usecs);

    const quint8 m_id;
    Dice m_dice;
    const std::vector<quint32> m_addresses;
    std::vector<Course> m_first; // one per address
    std::unique_ptr<simulator::Station> m_station;
    std::unordered_map<quint32, ValueHistory> m_histories; // by address
    qint64 m_answered = 0;                                 // the last request, when it is heard
    qint64 m_off_until = 0;
};

} // namespace campaign

#endif
