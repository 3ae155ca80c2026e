#include "host/line/stationcare.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

using State = StationHealth::State;

// Silent exchanges in a row, the driver's repetitions included, until a station is
// held off. One that has answered before is given one more.
constexpr int SilentUntilHeldOff = 2;
constexpr int KnownSilentUntilHeldOff = 3;

constexpr double Multiple = 2;           // of what a station has shown
constexpr double FirstWriteMsecs = 1000; // it has answered reads; writes may take longer
constexpr double SlowMsecs = 3000;
constexpr int TrialFactor = 3;  // from one trial to the next
constexpr int ShortTrials = 3;  // the next one is for the whole timeout
constexpr int OthersShare = 49; // of the line's time, for each part of a trial's
constexpr double ProbeFactor = 1.5;

} // namespace

const StationCare::Station* StationCare::findLocked(int station) const {
    const auto found = m_stations.find(station);
    return found == m_stations.end() ? nullptr : &found->second;
}

void StationCare::enter(Station& station, State state, qint64 now) {
    if (station.health.state == state)
        return;
    station.health.state = state;
    station.health.since_ms = now;
}

bool StationCare::admits(int station, qint64 now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    Station& asked = stationLocked(station);
    judgeSilence(asked, now);
    if (!asked.health.held_off || asked.asked_for || now >= asked.next_probe) {
        asked.asked_for = false;
        return true;
    }
    return false;
}

void StationCare::withheld(int station) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++stationLocked(station).health.withheld;
}

/** An answer may still be under way for a whole timeout; until then it is not down. */
void StationCare::judgeSilence(Station& station, qint64 now) {
    if (station.silent >= KnownSilentUntilHeldOff && now - station.silent_since >= m_timeout_ms)
        enter(station, State::Down, now);
}

double StationCare::ordinaryWait(const Station& station, bool is_write) const {
    const AnswerTime& own = is_write ? station.write : station.read;
    const AnswerTime& other = is_write ? station.read : station.write;
    double wait = Multiple * (own.isKnown() ? own : other).latest();
    if (is_write && !own.isKnown())
        wait = std::max(wait, FirstWriteMsecs);
    if (station.health.held_off)
        return std::max<double>(wait, ProbeWaitMsecs);
    // As the timer does that it is taken from: longer after each wait in vain.
    return std::max<double>(wait, ShortestWaitMsecs) * std::pow(2, station.silent);
}

/** Of the trial after so many; the last one is the whole timeout. */
int StationCare::trialMsecs(int trials) const {
    if (trials >= ShortTrials)
        return m_timeout_ms;
    return std::min(m_timeout_ms, FirstTrialMsecs * int(std::pow(TrialFactor, trials)));
}

bool StationCare::isAnyUp() const {
    return std::any_of(m_stations.begin(), m_stations.end(),
                       [](const auto& entry) { return entry.second.health.state == State::Up; });
}

int StationCare::trialWait(const Station& station, qint64 now) const {
    const bool is_first = station.trials == 0;
    const bool may_be_long = is_first || now >= m_next_trial || !isAnyUp();
    return station.trials <= ShortTrials && may_be_long ? trialMsecs(station.trials)
                                                        : ProbeWaitMsecs;
}

int StationCare::waitMsecs(int station, bool is_write, int wire_ms, qint64 now) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Station* const asked = findLocked(station);
    const double wait = !asked             ? FirstTrialMsecs
                        : asked->isKnown() ? ordinaryWait(*asked, is_write)
                                           : trialWait(*asked, now);
    return int(std::min<double>(m_timeout_ms, std::ceil(wait) + wire_ms));
}

bool StationCare::isTrial(int station) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Station* const asked = findLocked(station);
    return !asked || !asked->isKnown() || asked->health.held_off;
}

bool StationCare::isSlow(int station) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Station* const asked = findLocked(station);
    return asked && asked->isKnown() && !asked->health.held_off &&
           ordinaryWait(*asked, false) > SlowMsecs;
}

bool StationCare::isHeldOff(int station) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Station* const asked = findLocked(station);
    return asked && asked->health.held_off;
}

/** Its bytes have been heard: it is worth asking. */
void StationCare::revive(Station& station) {
    station.silent = 0;
    station.silent_since = -1;
    station.trials = 0;
    station.probe_gap = FirstProbeMsecs;
    station.health.held_off = false;
}

void StationCare::answered(int station, const Answered& answer, qint64 now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    Station& asked = stationLocked(station);
    revive(asked);
    enter(asked, State::Up, now);
    const double took = std::max(0.0, double(answer.took_usecs) / 1000 - answer.wire_ms);
    AnswerTime& time = answer.is_write ? asked.write : asked.read;
    if (answer.timed || !time.isKnown())
        time.add(took);
    StationHealth& health = asked.health;
    asked.total_usecs += answer.took_usecs;
    health.mean_usecs = asked.total_usecs / qint64(++health.answers);
    health.worst_usecs = std::max(health.worst_usecs, answer.took_usecs);
}

void StationCare::silent(int station, int waited_ms, qint64 now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    Station& asked = stationLocked(station);
    ++asked.silent;
    if (!asked.isKnown() && waited_ms >= trialMsecs(asked.trials)) {
        ++asked.trials;
        m_next_trial = now + OthersShare * waited_ms;
    }
    if (asked.silent_since < 0)
        asked.silent_since = now - waited_ms;
    if (asked.health.state != State::Down)
        enter(asked, State::Suspect, now);
    judgeSilence(asked, now);
    const int limit = asked.isKnown() ? KnownSilentUntilHeldOff : SilentUntilHeldOff;
    if (asked.silent < limit)
        return;
    asked.health.held_off = true;
    asked.next_probe = now + asked.probe_gap;
    asked.probe_gap = std::min(int(asked.probe_gap * ProbeFactor), LongestProbeMsecs);
}

void StationCare::garbled(int station, qint64 now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    Station& asked = stationLocked(station);
    revive(asked);
    if (asked.health.state != State::Up)
        enter(asked, State::Suspect, now);
}

void StationCare::heardLate(int station, qint64 took_ms, qint64 now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    Station& late = stationLocked(station);
    revive(late);
    enter(late, State::Up, now);
    for (AnswerTime* time : {&late.read, &late.write}) {
        if (!time->isKnown() || time->latest() < double(took_ms))
            time->restart(double(took_ms));
    }
    late.health.worst_usecs = std::max(late.health.worst_usecs, 1000 * took_ms);
}

void StationCare::askFor(int station) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    stationLocked(station).asked_for = true;
}

StationHealth StationCare::health(int station) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Station* const asked = findLocked(station);
    return asked ? asked->health : StationHealth();
}

std::map<int, StationHealth> StationCare::all() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::map<int, StationHealth> healths;
    for (const auto& [id, station] : m_stations)
        healths[id] = station.health;
    return healths;
}

} // namespace host
