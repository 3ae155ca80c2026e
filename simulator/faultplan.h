#ifndef SIMULATOR_FAULTPLAN_H
#define SIMULATOR_FAULTPLAN_H

#include "simulator/fault.h"

#include <map>
#include <mutex>
#include <random>
#include <vector>

namespace simulator {

/** Says for each request which fault strikes it. The same faults, seed and
 *  requests give the same answers every time. Any thread may call it. */
class FaultPlan {
public:
    FaultPlan(const std::vector<Fault>& faults, quint32 seed);

    /** The fault for the next request to @p station. All faults count the
     *  request; of those that are due the first in the list strikes. */
    std::optional<Fault> next(quint8 station, Command command);

    /** From now on @p fault strikes every request to @p station, whatever else
     *  is due, until release(). When @p fault names a command, others pass. */
    void force(quint8 station, const Fault& fault);
    void release(quint8 station);

private:
    struct Rule {
        Fault fault;
        quint64 matched = 0;
        quint64 struck = 0;
    };

    bool isDue(Rule& rule);

    std::mutex m_mutex; // guards all below
    std::vector<Rule> m_rules;
    std::map<quint8, Fault> m_forced;
    std::mt19937 m_random;
};

} // namespace simulator

#endif
