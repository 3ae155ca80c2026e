#include "tests/campaign/caller.h"

#include <algorithm>
#include <cstring>

namespace campaign {

namespace {

constexpr quint64 CallerDice = 10; // stream of the first role
constexpr int DWordSize = 4;
constexpr int LongestRead = 50; // double words

std::vector<Block> blocksOf(Caller::Role role, const Scenario& scenario) {
    std::vector<Block> blocks;
    for (std::size_t i = std::size_t(role); i < scenario.blocks.size(); i += 2)
        blocks.push_back(scenario.blocks[i]);
    return blocks;
}

quint32 valueAt(const QByteArray& data, int i) {
    quint32 value = 0;
    std::memcpy(&value, data.constData() + DWordSize * i, DWordSize);
    return value;
}

} // namespace

/** A double word of a read, as things stood when it was asked for. */
struct Caller::Asked {
    Tag* tag;            // null for no tag, which reads as 0
    qint64 cached_since; // of the tag
    bool left_behind;    // fetched for an earlier read that had given up
};

Caller::Caller(Role role, CallersWorld& world)
    : m_role(role)
    , m_world(world)
    , m_dice(world.scenario.seed, CallerDice + quint64(role))
    , m_blocks(blocksOf(role, world.scenario)) {}

void Caller::run() {
    while (!m_world.resting && !m_blocks.empty()) {
        m_world.time.sleepMsecs(
            quint32(m_dice.chance(0.5) ? m_dice.between(1, 50) : m_dice.between(1, 3000)));
        if (m_world.resting)
            return;
        m_calling = true;
        act();
        m_calling = false;
    }
}

void Caller::act() {
    const bool host = m_role == Role::Host;
    const int face = m_dice.between(1, 100);
    if (face <= 45) {
        readSome();
    } else if (face <= 80) {
        writeSome();
    } else if (face <= 90 && host) {
        m_world.sessions.setSome(m_dice);
        ++m_world.figures.sessions;
    } else if (face <= 92 && host) {
        m_world.rig.driver().clearSessionCommand();
    } else {
        checkStatus();
    }
}

/** Around a block's end there are double words that are no tags. */
void Caller::readSome() {
    const Block& block = m_dice.pick(m_blocks);
    const quint32 start = block.first + quint32(m_dice.between(0, block.count - 1));
    const int most = int(block.first) + block.count - int(start) + m_dice.between(0, 1);
    read(block.station, start, m_dice.between(1, std::min(most, LongestRead)));
}

bool Caller::read(quint8 station, quint32 start, int count) {
    m_world.sessions.watch();
    std::vector<Asked> asked;
    for (int i = 0; i < count; ++i) {
        const quint32 address = start + quint32(i);
        Tag* const tag = m_world.tags.find(station, address);
        asked.push_back({tag, tag ? tag->cached_since : -1,
                         m_world.rig.thread().addrInReadOnceDataMap(station, address)});
    }
    const qint64 began = m_world.time.now();
    const qint64 locked_out = m_world.time.lockedOutUsecs();
    const quint64 failed = m_world.figures.failed_exchanges;
    const QByteArray data = ask(station, start, count);
    ++m_world.figures.caller_reads;
    m_world.figures.caller_reads_failed += data.isEmpty();
    judgeWait(began, m_world.time.lockedOutUsecs() - locked_out);
    if (data.isEmpty())
        judgeFailure(asked, began, m_world.figures.failed_exchanges > failed);
    else
        judge(asked, data, began);
    return !data.isEmpty();
}

QByteArray Caller::ask(quint8 station, quint32 start, int count) {
    if (m_role == Role::Transfer)
        return m_world.rig.driver().readDWords(station, start, quint32(count));
    m_world.rig.port().setStationId(station);
    return m_world.rig.driver().read(
        &m_world.rig.port(), CommunicatorCommand(QString::fromLatin1("NA%1").arg(start, 0, 16),
                                                 CommunicatorCommand::DoubleWord, count));
}

void Caller::judge(const std::vector<Asked>& asked, const QByteArray& data, qint64 began) {
    if (data.size() != DWordSize * int(asked.size())) {
        m_world.verdict.fail(QStringLiteral("a read gives another number of bytes"));
        return;
    }
    for (std::size_t i = 0; i < asked.size(); ++i) {
        const quint32 value = valueAt(data, int(i));
        const bool wrong = asked[i].tag ? isOld(asked[i], value, began) : value != 0;
        if (wrong)
            m_world.verdict.fail(QString::fromLatin1("a read gives %1 as double word %2, which no "
                                                     "exchange has brought since it was asked for")
                                     .arg(value, 8, 16, QLatin1Char('0'))
                                     .arg(i));
    }
}

/** Fresh is what an exchange has brought since the call, for a tag of the session the
 *  last before it, too. A read that gave up leaves its values to the next one,
 *  however old they are then. */
bool Caller::isOld(const Asked& asked, quint32 value, qint64 began) {
    const Tag& tag = *asked.tag;
    bool last_before = true;
    for (auto brought = tag.brought.rbegin(); brought != tag.brought.rend(); ++brought) {
        const bool fresh = brought->usecs >= began;
        const bool cached = (asked.cached_since >= 0 && brought->usecs >= asked.cached_since) ||
                            (tag.cached_since >= 0 && brought->usecs >= tag.cached_since);
        if (brought->value == value && (fresh || (cached && last_before)))
            return false;
        last_before = last_before && fresh;
    }
    const bool left_behind = asked.left_behind && tag.given_up;
    m_world.figures.left_behind += left_behind;
    return !left_behind;
}

/** Twice the budget: once for an error to end, once for the values; and the fetches
 *  for others that are being made. */
void Caller::judgeWait(qint64 began, qint64 locked_out) {
    constexpr qint64 PollMsecs = 40; // in which the driver looks, of both waits
    const qint64 waited = (m_world.time.now() - began) / 1000;
    const qint64 own = waited - locked_out / 1000;
    const qint64 budget = m_world.rig.waitBudgetMsecs();
    m_world.figures.longest_read_ms = std::max(m_world.figures.longest_read_ms, waited);
    if (own > 2 * budget + PollMsecs)
        m_world.verdict.fail(QString::fromLatin1("a read takes %1 ms").arg(own));
    if (locked_out / 1000 > longestFetchMsecs())
        m_world.verdict.fail(
            QString::fromLatin1("a read is locked out for %1 ms").arg(locked_out / 1000));
}

/** Only for want of time; or at once, when the last value is there and another is
 *  not: an exchange has failed, a read that gave up has left the last one behind, or
 *  the session has brought it into the cache while the read was queued. */
void Caller::judgeFailure(const std::vector<Asked>& asked, qint64 began, bool line_failed) {
    const qint64 waited = (m_world.time.now() - began) / 1000;
    const bool explained = std::any_of(asked.begin(), asked.end(), [began](const Asked& item) {
        return item.tag && (item.tag->given_up || item.tag->isFreshSince(began));
    });
    const bool hasty = waited < m_world.rig.waitBudgetMsecs() && !line_failed;
    m_world.figures.hasty_reads += hasty;
    if (hasty && !explained)
        m_world.verdict.fail(QString::fromLatin1("a read is given up after %1 ms").arg(waited));
    for (const Asked& item : asked) {
        if (item.tag)
            item.tag->given_up = true;
    }
}

qint64 Caller::longestFetchMsecs() const {
    constexpr qint64 RunsOfAFetch = 6;        // few: two callers, and reads that gave up
    constexpr qint64 TimeoutsOfAnAttempt = 4; // to open the line, for quiet, for its two halves
    const qint64 attempt = TimeoutsOfAnAttempt * m_world.scenario.timeout_ms + 2000;
    return RunsOfAFetch * (m_world.scenario.retries + 1) * attempt;
}

void Caller::writeSome() {
    const Block& block = m_dice.pick(m_world.scenario.blocks);
    const int skipped = m_dice.between(0, block.count - 1);
    const int count = m_dice.chance(0.6) ? 1 : m_dice.between(1, block.count - skipped);
    write(block.station, block.first + quint32(skipped),
          newValues(std::min(count, block.count - skipped)));
}

QByteArray Caller::newValues(int count) {
    QByteArray data;
    for (int i = 0; i < count; ++i) {
        const quint32 value = 0x9E3779B1u * ++m_world.written; // never the same twice
        data.append(reinterpret_cast<const char*>(&value), DWordSize);
    }
    return data;
}

void Caller::write(quint8 station, quint32 start, const QByteArray& data) {
    const bool refused = m_world.rig.thread().hasError();
    const int count = data.size() / DWordSize;
    for (int i = 0; i < count; ++i) {
        if (refused)
            m_world.writes.refused(valueAt(data, i));
        else
            m_world.writes.queued(station, start + quint32(i), valueAt(data, i));
    }
    if (m_role == Role::Transfer) {
        m_world.rig.probe().writeDWords(station, start, data);
        return;
    }
    m_world.rig.port().setStationId(station);
    m_world.rig.driver().write(&m_world.rig.port(),
                               CommunicatorCommand(QString::fromLatin1("NA%1").arg(start, 0, 16),
                                                   CommunicatorCommand::DoubleWord, count),
                               data);
}

void Caller::checkStatus() {
    DriverDMC50v3& driver = m_world.rig.driver();
    if (driver.hasError() && driver.getLastError() != m_world.exchanges.errorText())
        m_world.verdict.fail(QString::fromLatin1("the driver reports \"%1\" in place of \"%2\"")
                                 .arg(driver.getLastError(), m_world.exchanges.errorText()));
}

} // namespace campaign
