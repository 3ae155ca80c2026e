#include "apps/dmc50ctl/watchcommand.h"

#include "apps/dmc50ctl/stationtable.h"
#include "apps/dmc50ctl/valuetable.h"
#include "runtime/base/clock.h"
#include "trace/frametrace.h"

#include <nlohmann/json.hpp>

#include <QScopeGuard>

#include <algorithm>
#include <unistd.h>

using namespace host;

namespace {

const char HomeAndClear[] = "\x1b[H\x1b[J"; // redraws without the flicker of a full clear
const char ClearScreen[] = "\x1b[2J";

constexpr qint64 FirstRoundMsecs = 3000; // for values that have not come yet
constexpr qint64 DrawPauseMsecs = 50;    // nobody reads faster

StationHealth healthOf(const TagDefinition& tag, const std::vector<StationStatus>& stations) {
    for (const StationStatus& status : stations) {
        if (status.link_id == tag.link_id && status.station == tag.station)
            return status.health;
    }
    return StationHealth();
}

/** One watching, from its first round to its last. */
class Watching {
public:
    Watching(PanelSession& session, const Target& target, const Options& options,
             Interruption& interruption);

    /** Returns the exit status. */
    int run();

private:
    void awaitRound(qint64 due, bool is_first);
    QVector<ValueRow> rows(const std::vector<StationStatus>& stations) const;
    bool show();

    const Target& m_target;
    const Options& m_options;
    Interruption& m_interruption;
    Clock& m_clock = Clock::system();
    const bool m_redraw;
    ValueHub m_hub;
    const std::unique_ptr<Subscription> m_changes; // of all tags
    const std::unique_ptr<Subscription> m_nothing; // for who waits for the time only
    qint64 m_shown = 0;                            // when, ms
};

Watching::Watching(PanelSession& session, const Target& target, const Options& options,
                   Interruption& interruption)
    : m_target(target)
    , m_options(options)
    , m_interruption(interruption)
    , m_redraw(!options.json && isatty(STDOUT_FILENO) == 1)
    , m_hub(session, target.tags, HubSetup())
    , m_changes(m_hub.subscribe(m_hub.allTags()))
    , m_nothing(m_hub.subscribe({})) {}

int Watching::run() {
    const auto taken_away = qScopeGuard([this] { m_interruption.setEnding(nullptr); });
    m_interruption.setEnding([this] {
        m_hub.stop();
        m_changes->mailbox().wake();
        m_nothing->mailbox().wake();
    });
    if (m_redraw)
        fputs(ClearScreen, stdout);
    qint64 due = m_clock.msecsSinceBoot() + FirstRoundMsecs;
    for (int round = 1; !m_interruption.interrupted(); ++round) {
        awaitRound(due, round == 1);
        if (m_interruption.interrupted())
            break;
        const bool ok = show();
        if (round == m_options.rounds)
            return ok ? ExitOk : ExitCommunication;
        const qint64 start = round == 1 ? m_shown : due;
        due = std::max(start + m_options.interval_ms, m_shown); // missed ones are not made up for
    }
    return ExitOk;
}

/** Meanwhile a terminal shows what changes. */
void Watching::awaitRound(qint64 due, bool is_first) {
    Mailbox& mailbox = (m_redraw || is_first ? m_changes : m_nothing)->mailbox();
    bool changed = false;
    while (!m_interruption.interrupted()) {
        const qint64 now = m_clock.msecsSinceBoot();
        if (now >= due || (is_first && m_hub.hasTriedAll()))
            return;
        if (changed && now >= m_shown + DrawPauseMsecs) {
            show();
            changed = false;
        }
        const qint64 end = changed ? std::min(due, m_shown + DrawPauseMsecs) : due;
        if (mailbox.await(int(std::max<qint64>(end - now, 0))))
            changed = !mailbox.take().empty() && m_redraw;
    }
}

QVector<ValueRow> Watching::rows(const std::vector<StationStatus>& stations) const {
    QVector<ValueRow> rows;
    const qint64 now_usecs = trace::monotonicMicroseconds();
    for (const TagId id : m_hub.allTags()) {
        const TagState state = m_hub.read(id);
        ValueRow row;
        row.tag = m_hub.tag(id);
        row.result.data = state.data;
        if (state.quality != Quality::Good)
            row.result.error = state.text.isEmpty() ? QStringLiteral("no value yet") : state.text;
        if (state.when.monotonic_usecs >= 0)
            row.age_ms = (now_usecs - state.when.monotonic_usecs) / 1000;
        row.watched = {state, healthOf(row.tag, stations), m_shown};
        rows.append(row);
    }
    return rows;
}

/** Returns whether every value is good. */
bool Watching::show() {
    m_shown = m_clock.msecsSinceBoot();
    const std::vector<StationStatus> stations = m_hub.stations();
    const QVector<ValueRow> shown = rows(stations);
    if (m_redraw)
        fputs(HomeAndClear, stdout);
    if (m_options.json)
        printLine(QString::fromStdString(valueJson(shown, m_options.format).dump()));
    else
        printLine(valueTable(shown, m_options.format, true) + QLatin1String("\n\n") +
                  stationTable(stations, m_target.project, m_shown));
    return std::all_of(shown.begin(), shown.end(),
                       [](const ValueRow& row) { return row.result.ok(); });
}

} // namespace

int runWatch(PanelSession& session, const Target& target, const Options& options,
             Interruption& interruption) {
    return Watching(session, target, options, interruption).run();
}
