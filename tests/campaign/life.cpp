#include "tests/campaign/life.h"

#include <algorithm>

namespace campaign {

namespace {

constexpr quint64 ProcessDice = 20; // stream
constexpr qint64 LongestProbeUsecs = 30000000;
constexpr int StepMsecs = 1000;
constexpr int HangSteps = 1200; // seconds without any exchange

} // namespace

Life::Life(const Scenario& scenario, quint64 exchanges)
    : m_scenario(scenario)
    , m_exchanges(exchanges)
    , m_verdict([this] { noteFailure(); })
    , m_tags(scenario)
    , m_writes(scenario.retries, m_figures)
    , m_line(scenario, m_time,
             [this](quint8 station, quint32 address, quint32 value) {
                 m_verdict.fail(m_writes.applied(station, address, value));
             })
    , m_check(m_line, m_tags, m_writes, m_figures, m_verdict)
    , m_rig(scenario, m_time, m_line, m_check)
    , m_sessions(scenario, m_time, m_rig, m_tags)
    , m_world{scenario, m_time, m_rig, m_tags, m_writes, m_sessions, m_check, m_figures, m_verdict}
    , m_host(Caller::Role::Host, m_world)
    , m_transfer(Caller::Role::Transfer, m_world) {
    m_check.setOnBeginning([this] { m_sessions.watch(); });
}

Outcome Life::run() {
    m_time.start([this] { m_rig.thread().loop(); });
    m_time.start([this] { m_host.run(); });
    m_time.start([this] { m_transfer.run(); });
    m_time.start([this] { stir(); });
    m_time.start([this] { supervise(); });
    const qint64 began = m_time.now();
    m_time.run();
    m_figures.runs = 1;
    m_figures.sent = m_line.requests();
    m_figures.faults = m_line.faults().counts();
    m_figures.virtual_ms = (m_time.now() - began) / 1000;
    m_figures.digest = m_line.journal().digest();
    m_outcome.failure = m_verdict.text();
    m_outcome.figures = m_figures;
    return m_outcome;
}

void Life::noteFailure() {
    m_outcome.step = m_figures.exchanges;
    m_outcome.last = m_line.journal().last();
}

void Life::supervise() {
    if (awaitExchanges())
        awaitRecovery();
    m_world.resting = true;
    m_ended = true;
    m_rig.thread().stop();
}

/** Returns whether all went well so far. */
bool Life::awaitExchanges() {
    quint64 seen = 0;
    for (int idle = 0; m_figures.exchanges < m_exchanges && !m_verdict.hasFailed(); ++idle) {
        if (idle > HangSteps)
            m_verdict.fail(QStringLiteral("nothing happens any more"));
        if (seen != m_figures.exchanges)
            idle = 0;
        seen = m_figures.exchanges;
        m_time.sleepMsecs(StepMsecs);
    }
    return !m_verdict.hasFailed();
}

/** A probe interval and a cycle, and the wait that is under way at their beginning. A
 *  station that was slow is asked again when nothing that it owes can still come:
 *  that takes some timeouts more, and is counted. */
void Life::awaitRecovery() {
    constexpr qint64 OwedTimeouts = 5;
    m_line.calm();
    m_world.resting = true;
    m_sessions.setAll();
    const qint64 since = m_time.now();
    const qint64 timeout = 1000 * qint64(m_scenario.timeout_ms);
    const qint64 promised = since + LongestProbeUsecs + cycleUsecs() + timeout;
    const qint64 limit = promised + OwedTimeouts * timeout;
    while (!whatIsLeft(since).isEmpty() && m_time.now() < limit && !m_verdict.hasFailed())
        m_time.sleepMsecs(StepMsecs / 10);
    const qint64 took = (m_time.now() - since) / 1000;
    m_figures.late_recoveries += m_time.now() > promised;
    m_figures.longest_recovery_ms = std::max(m_figures.longest_recovery_ms, took);
    if (!whatIsLeft(since).isEmpty())
        m_verdict.fail(
            QString::fromLatin1("%1 %2 ms after the last fault").arg(whatIsLeft(since)).arg(took));
    else
        readEverything();
}

QString Life::whatIsLeft(qint64 since) {
    if (m_host.isCalling() || m_transfer.isCalling())
        return QStringLiteral("a caller still waits");
    if (!m_writes.isIdle())
        return QStringLiteral("writes still wait");
    if (m_rig.thread().hasError())
        return QStringLiteral("the driver is in error");
    for (const Tag& tag : m_tags.tags()) {
        if (!tag.isFreshSince(since))
            return QString::fromLatin1("station %1 is not fresh").arg(tag.station);
    }
    return QString();
}

void Life::readEverything() {
    for (const Block& block : m_scenario.blocks) {
        if (!m_host.read(block.station, block.first, block.count))
            m_verdict.fail(QStringLiteral("a read fails on a line without faults"));
    }
}

/** All tags once, each station's in as few requests as possible. */
qint64 Life::cycleUsecs() const {
    constexpr int MostTags = 50, FrameCharacters = 30; // of one exchange, without its items
    std::map<quint8, int> tags;
    for (const Block& block : m_scenario.blocks)
        tags[block.station] += block.count;
    const Wire wire(m_scenario.baud);
    qint64 usecs = 1000000; // the writes that wait, and what the machines need
    for (const auto& [station, count] : tags) {
        const int runs = (count + MostTags - 1) / MostTags;
        const int pause = std::max(10, m_scenario.frame_interval_ms) + m_scenario.turnaround_ms;
        usecs +=
            runs * (1000 * qint64(pause) + wire.timeOf(FrameCharacters)) + wire.timeOf(16 * count);
    }
    return usecs;
}

/** The process: values change by themselves. */
void Life::stir() {
    Dice dice(m_scenario.seed, ProcessDice);
    while (!m_ended) {
        m_time.sleepMsecs(quint32(dice.between(10, 2000)));
        m_line.controller(dice.pick(m_scenario.stations)).stir(m_time.now());
    }
}

} // namespace campaign
