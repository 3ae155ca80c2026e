#include "host/transfer/recipetransfer.h"

#include <QtEndian>

#include <algorithm>

namespace host {

namespace {

constexpr int PollMsecs = 50;                // between two looks at the tags
constexpr int BeginMsecs = 5000;             // for the driver's worker to take an order
constexpr int SettleMsecs = 10000;           // a transfer's end is shown for 2 s, at most twice
constexpr qint64 ShortestStallMsecs = 60000; // no transfer stands still for so long
constexpr int TemplateId = -1;

/** "VVT_ENABLE1" for a pull, "VVT_ENABLE0" for a push. */
QString transferTag(const char* name, TransferKind kind) {
    return QString::fromLatin1("VVT_%1%2")
        .arg(QLatin1String(name))
        .arg(kind == TransferKind::Push ? 0 : 1);
}

} // namespace

RecipeTransfer::RecipeTransfer(LinkSession& link, int station, Clock& clock)
    : m_link(link), m_station(station), m_clock(clock) {}

TagDefinition RecipeTransfer::tag(const QString& address) const {
    TagDefinition tag;
    tag.name = address;
    tag.address = *parseProjectAddress(address);
    tag.type = *tagTypeByName(QStringLiteral("int32"));
    tag.station = m_station;
    return tag;
}

Result<int> RecipeTransfer::value(const char* name, TransferKind kind) {
    const TagResult result = m_link.read(tag(transferTag(name, kind)));
    if (!result.ok())
        return Failure(result.error);
    return result.data.size() < 4 ? 0 : qFromLittleEndian<qint32>(result.data.constData());
}

Result<void> RecipeTransfer::setValue(const char* name, int number) {
    QByteArray data(4, '\0');
    qToLittleEndian<qint32>(number, data.data());
    const TagResult written = m_link.write(tag(QLatin1String(name)), data);
    if (!written.ok())
        return Failure(written.error);
    return {};
}

RecipeTransfer::Flags RecipeTransfer::flags(TransferKind kind) {
    Flags now;
    const Result<int> percent = value("PROGRESS", kind);
    const Result<int> failed = value("ERROR", kind);
    const Result<int> running = value("ENABLE", kind);
    for (const Result<int>* asked : {&percent, &failed, &running}) {
        if (!*asked)
            now.error = asked->error();
    }
    now.percent = percent.value_or(0);
    now.failed = failed.value_or(0) != 0;
    now.running = running.value_or(0) != 0;
    now.given_up = kind == TransferKind::Push && isSilent();
    return now;
}

/** Whether the port withholds what goes to the station, or the station has left a
 *  request with all its retries unanswered, and everything since. What is written then
 *  is lost, but the driver would go on with the rest and report success; its error
 *  shows too briefly to be seen. */
bool RecipeTransfer::isSilent() const {
    if (m_link.port().stationHealth(m_station).withheld != m_withheld_before)
        return true;
    if (m_link.port().statistics().silent == m_silent_before)
        return false;
    const qint64 since_reply = m_link.stationAgeMsecs(m_station);
    const qint64 since_start = m_clock.msecsSinceBoot() - m_start;
    return (since_reply < 0 ? since_start : std::min(since_reply, since_start)) >
           m_link.patienceMsecs();
}

/** The driver shows a line's error only for a moment: so it is looked for often. */
void RecipeTransfer::pass(int msecs) {
    for (int waited = 0; waited < msecs; waited += int(LinkSession::LookIntervalMsecs)) {
        m_link.lookForError();
        m_clock.sleepMsecs(LinkSession::LookIntervalMsecs);
    }
}

/** False after @p msecs, or when the tags cannot be read. */
bool RecipeTransfer::await(TransferKind kind, int msecs,
                           const std::function<bool(const Flags&)>& condition, Flags& now) {
    const qint64 deadline = m_clock.msecsSinceBoot() + msecs;
    for (;;) {
        now = flags(kind);
        if (!now.error.isEmpty())
            return false;
        if (condition(now))
            return true;
        if (m_clock.msecsSinceBoot() >= deadline)
            return false;
        pass(PollMsecs);
    }
}

/** The driver does not take another of the kind before. */
void RecipeTransfer::settle(TransferKind kind) {
    Flags ignored;
    await(
        kind, SettleMsecs, [](const Flags& now) { return !now.running && now.percent == 0; },
        ignored);
}

void RecipeTransfer::settle() {
    settle(TransferKind::Pull);
    settle(TransferKind::Push);
}

Result<void> RecipeTransfer::start(TransferKind kind, int program_id, int count) {
    const bool is_push = kind == TransferKind::Push;
    const std::pair<const char*, int> order[] = {
        {"VVT_PROG_ID0", kind == TransferKind::Template ? TemplateId : program_id},
        {"VVT_PROG_COUNT0", count},
        {is_push ? "VVT_ERROR0" : "VVT_ERROR1", 0}, // a pull leaves that of an earlier one
        {is_push ? "VVT_ENABLE0" : "VVT_ENABLE1", 1}};
    for (const auto& [name, number] : order) {
        if (const Result<void> set = setValue(name, number); !set)
            return set;
    }
    return {};
}

TransferEnd RecipeTransfer::follow(TransferKind kind, const Progress& progress) {
    const qint64 stall_ms = std::max(ShortestStallMsecs, 2 * m_link.patienceMsecs());
    TransferEnd end;
    progress(0);
    for (Flags now; end.error.isEmpty() && !end.completed && !end.failed;) {
        const int last = now.percent;
        const bool has_moved = await(
            kind, int(stall_ms),
            [last](const Flags& next) { return next.isOver() || next.percent != last; }, now);
        end = {now.percent == 100, now.failed, now.error};
        if (now.error.isEmpty() && !has_moved)
            end.error = QString::fromLatin1("the driver has made no progress for %1 s")
                            .arg(stall_ms / 1000);
        if (now.given_up && !now.failed)
            end.error = QStringLiteral("the controller does not answer");
        if (now.percent > last && !now.failed)
            progress(now.percent);
        if (now.isOver())
            break;
    }
    return end;
}

TransferEnd RecipeTransfer::run(TransferKind kind, int program_id, int count,
                                const Progress& progress) {
    settle(kind);
    TransferEnd end;
    m_start = m_clock.msecsSinceBoot();
    m_silent_before = m_link.port().statistics().silent;
    m_withheld_before = m_link.port().stationHealth(m_station).withheld;
    if (const Result<void> started = start(kind, program_id, count); !started) {
        end.error = started.error();
        return end;
    }
    Flags now;
    // A template that cannot be saved is over at once: only its notice tells.
    const bool has_begun = await(
        kind, BeginMsecs, [](const Flags& next) { return next.hasBegun(); }, now);
    end.error = now.error;
    return has_begun ? follow(kind, progress) : end;
}

} // namespace host
