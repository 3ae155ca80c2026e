#include "simulator/faultplan.h"

namespace simulator {

namespace {

bool concerns(const Fault& fault, quint8 station, Command command) {
    return fault.station.value_or(station) == station && fault.command.value_or(command) == command;
}

} // namespace

FaultPlan::FaultPlan(const std::vector<Fault>& faults, quint32 seed) : m_random(seed) {
    for (const Fault& fault : faults)
        m_rules.push_back({fault});
}

std::optional<Fault> FaultPlan::next(quint8 station, Command command) {
    std::lock_guard<std::mutex> lock(m_mutex);
    std::optional<Fault> chosen;
    for (Rule& rule : m_rules) {
        if (!concerns(rule.fault, station, command) || !isDue(rule) || chosen)
            continue;
        ++rule.struck;
        chosen = rule.fault;
    }
    const auto forced = m_forced.find(station);
    if (forced != m_forced.end() && concerns(forced->second, station, command))
        return forced->second;
    return chosen;
}

void FaultPlan::force(quint8 station, const Fault& fault) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_forced[station] = fault;
}

void FaultPlan::release(quint8 station) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_forced.erase(station);
}

bool FaultPlan::isDue(Rule& rule) {
    const Fault& fault = rule.fault;
    ++rule.matched;
    // Drawn even when the fault is used up, so that the others see the same numbers.
    const bool drawn = fault.chance >= 0 && m_random() < fault.chance * 4294967296.0;
    if (fault.count > 0 && rule.struck >= fault.count)
        return false;
    if (fault.chance >= 0)
        return drawn;
    if (fault.on > 0)
        return rule.matched == fault.on;
    return fault.every == 0 || rule.matched % fault.every == 0;
}

} // namespace simulator
