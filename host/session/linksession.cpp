#include "host/session/linksession.h"

#include "host/session/drivererror.h"
#include "host/session/polledstation.h"
#include "trace/frametrace.h"

#include <QScopeGuard>
#include <QtEndian>

#include <algorithm>

namespace host {

namespace {

constexpr qint64 DriverTimeoutMsecs = 3000; // the driver's shortest patience per attempt
constexpr qint64 ErrorGraceMsecs = 200;     // for a failure's text to show up

const char Interrupted[] = "interrupted";

/** The station that a driver's error text names; 0: none. */
int stationIn(const QString& text) {
    const std::optional<DriverError> error = readDriverError(text);
    return error ? error->station : 0;
}

/** Requests that the driver needs to read all of @p tags, at most. */
quint64 scanFrames(const QVector<TagDefinition>& tags) {
    QMap<int, int> dwords; // by station
    for (const TagDefinition& tag : tags)
        dwords[tag.station] += tag.dwords();
    quint64 frames = 0;
    for (const int count : std::as_const(dwords))
        frames +=
            quint64((count + PolledStation::FrameAddresses - 1) / PolledStation::FrameAddresses);
    return frames;
}

} // namespace

/** What is seen of the driver while a write is on its way. */
struct LinkSession::Watch {
    int station = 0;     // that is written to
    QString error;       // the last one seen
    QString write_error; // the last one seen about a write to the station
    qint64 deadline = 0; // of the present wait; the clock's time, ms
    qint64 limit = std::numeric_limits<qint64>::max(); // of all waits
};

LinkSession::LinkSession(std::unique_ptr<HostPort> port, std::unique_ptr<DriverInterface> driver,
                         Clock& clock)
    : m_clock(clock), m_port(std::move(port)), m_driver(std::move(driver)) {}

LinkSession::~LinkSession() {
    cancel();
}

void LinkSession::cancel() {
    m_cancelled = true;
    m_port->cancel();
}

void LinkSession::poll(const QVector<TagDefinition>& tags) {
    m_polled = tags;
    m_first_scan_due = scanFrames(tags) > 0;
    setSession(tags);
}

/** The driver takes a session's counts for double words, and only here takes the
 *  station from the address. */
void LinkSession::setSession(const QVector<TagDefinition>& tags) {
    QList<CommunicatorCommand> commands;
    QSet<int> stations;
    for (const TagDefinition& tag : tags) {
        if (tag.address.kind != AddressKind::Data)
            continue;
        commands.append(
            CommunicatorCommand(QString::fromLatin1("%1-%2").arg(tag.station).arg(tag.address.text),
                                CommunicatorCommand::DoubleWord, tag.dwords()));
        stations.insert(tag.station);
    }
    if (commands.isEmpty())
        return; // the driver ignores an empty list
    m_driver->setSessionCommand(commands);
    m_session_stations = stations;
}

qint64 LinkSession::patienceMsecs() const {
    const qint64 timeout = m_port->responseTimeout();
    return std::max(DriverTimeoutMsecs, timeout) * (m_port->retryCount() + 1);
}

/** Lets the wait that begins now last @p msecs. */
void LinkSession::allow(Watch& watch, qint64 msecs) const {
    watch.deadline = std::min(m_clock.msecsSinceBoot() + msecs, watch.limit);
}

QString LinkSession::failureText(int station) {
    Watch watch;
    allow(watch, ErrorGraceMsecs);
    while (tick(watch) && watch.error.isEmpty()) {
    }
    if (m_cancelled)
        return QLatin1String(Interrupted);
    const QString own = stationError(station);
    if (!own.isEmpty() || !watch.error.isEmpty())
        return own.isEmpty() ? watch.error : own;
    return QString::fromLatin1("no value from station %1").arg(station);
}

QByteArray LinkSession::readQueueSize() {
    return m_driver->read(m_port.get(), CommunicatorCommand(QStringLiteral("WRITE_QUE_SIZE0"),
                                                            CommunicatorCommand::Word, 1));
}

Result<void> LinkSession::start() {
    if (readQueueSize().isEmpty())
        return Failure(failureText(0));
    return {};
}

QByteArray LinkSession::readDwords(int station, quint32 address, int dwords) {
    m_port->setStationId(station);
    return m_driver->read(m_port.get(),
                          CommunicatorCommand(QString::fromLatin1("NA%1").arg(address, 0, 16),
                                              CommunicatorCommand::DoubleWord, dwords));
}

TagResult LinkSession::read(const TagDefinition& tag) {
    if (m_cancelled)
        return {QByteArray(), QLatin1String(Interrupted)};
    m_port->setStationId(tag.station);
    const QByteArray data = m_driver->read(m_port.get(), tag.command());
    if (data.isEmpty())
        return {data, failureText(tag.station)};
    return {data, QString()};
}

QVector<TagResult> LinkSession::readAll(const QVector<TagDefinition>& tags) {
    QVector<TagResult> results;
    QMap<int, QString> failed_stations;
    for (const TagDefinition& tag : tags) {
        const auto failed = failed_stations.constFind(tag.station);
        if (failed != failed_stations.constEnd()) {
            results.append({QByteArray(), *failed});
            continue;
        }
        results.append(read(tag));
        awaitFirstScan(); // the first reading has started the driver's thread
        if (!results.last().ok())
            failed_stations.insert(tag.station, results.last().error);
    }
    return results;
}

int LinkSession::waitingWrites(int station) {
    m_port->setStationId(station);
    const QByteArray data = readQueueSize();
    return data.size() < 2 ? 0 : qFromLittleEndian<quint16>(data.constData());
}

QString LinkSession::lookForError() {
    if (!m_driver->hasError())
        return QString();
    const QString text = m_driver->getLastError();
    m_errors[stationIn(text)] = {text, m_port->usecs()};
    return text;
}

QString LinkSession::stationError(int station) const {
    const auto seen = m_errors.constFind(station);
    if (seen == m_errors.constEnd() || m_port->lastGoodReplyUsecs(station) > seen->usecs)
        return QString();
    return seen->text;
}

qint64 LinkSession::stationAgeMsecs(int station) const {
    const qint64 answered = m_port->lastGoodReplyUsecs(station);
    return answered < 0 ? -1 : (m_port->usecs() - answered) / 1000;
}

/** Lets time pass, looks for an error; false when the waiting is over. */
bool LinkSession::tick(Watch& watch) {
    const QString error = lookForError();
    if (!error.isEmpty())
        watch.error = error;
    if (error.startsWith(QLatin1String("write ")) && stationIn(error) == watch.station)
        watch.write_error = error;
    if (m_cancelled || m_clock.msecsSinceBoot() >= watch.deadline)
        return false;
    m_clock.sleepMsecs(LookIntervalMsecs);
    return true;
}

/** While the link is in error the driver takes a write, drops it and reports
 *  success, whichever station the error is of. So one is made only when there is
 *  none, and, with @p must_answer, when @p station has answered: that is how the
 *  end of the last request to another station is seen, which might still fail. */
Result<void> LinkSession::awaitTurn(Watch& watch, bool must_answer) {
    const int station = watch.station;
    const qint64 last_reply = m_port->lastGoodReplyUsecs(station);
    if (must_answer)
        waitingWrites(station);        // for its side effect: it starts the driver's thread
    allow(watch, 2 * patienceMsecs()); // another station's, its own
    const auto is_answered = [&] { return m_port->lastGoodReplyUsecs(station) != last_reply; };
    while (m_driver->hasError() || (must_answer && !is_answered())) {
        if (tick(watch))
            continue;
        if (m_cancelled)
            return Failure(QLatin1String(Interrupted));
        if (m_driver->hasError() && !watch.error.isEmpty())
            return Failure(watch.error);
        break;
    }
    if (m_clock.msecsSinceBoot() >= watch.limit)
        return Failure(QStringLiteral("not sent in time"));
    return {};
}

bool LinkSession::awaitDrained(int station, Watch& watch) {
    int least = waitingWrites(station);
    allow(watch, patienceMsecs());
    for (int waiting = least; waiting > 0; waiting = waitingWrites(station)) {
        if (waiting < least)
            allow(watch, patienceMsecs());
        least = std::min(least, waiting);
        if (!tick(watch))
            return false;
    }
    return true;
}

/** Waits until every address of @p tags, which are polled, has been read again
 *  after a write that was the last in the queue: one request may still be the
 *  write itself, and the last reading is complete when a further request goes
 *  out. */
void LinkSession::awaitScan(const QVector<TagDefinition>& tags, Watch& watch) {
    const quint64 enough = m_port->statistics().asked() + 1 + scanFrames(tags) + 1;
    allow(watch, patienceMsecs());
    while (m_port->statistics().asked() < enough && tick(watch)) {
    }
}

/** A tag that the driver does not have yet costs a request of its own. */
void LinkSession::awaitFirstScan() {
    if (!m_first_scan_due)
        return;
    m_first_scan_due = false;
    const quint64 enough = m_port->statistics().asked() + scanFrames(m_polled) + 1;
    Watch watch;
    allow(watch, patienceMsecs());
    while (m_port->statistics().asked() < enough && watch.error.isEmpty() && tick(watch)) {
    }
}

TagResult LinkSession::checkedWrite(const TagDefinition& tag, const QByteArray& data,
                                    bool must_read_back, Watch& watch) {
    if (awaitDrained(tag.station, watch))
        awaitScan({tag}, watch);
    if (m_clock.msecsSinceBoot() >= watch.limit)
        return {QByteArray(), QStringLiteral("not confirmed in time")};
    // The driver would wait for it as long as for a station that may still answer.
    // The write's own error shows for some milliseconds only, and may not be seen.
    if (m_port->stationHealth(tag.station).held_off)
        return {QByteArray(),
                watch.write_error.isEmpty() ? failureText(tag.station) : watch.write_error};
    TagResult result = read(tag);
    if (result.ok() && result.data == data)
        return result; // also when a first attempt failed
    const bool differs = result.ok() && must_read_back;
    if (!m_cancelled && !watch.write_error.isEmpty())
        result.error = watch.write_error;
    else if (differs)
        result.error = QStringLiteral("the controller shows another value");
    return result;
}

TagResult LinkSession::hand(const TagDefinition& tag, const QByteArray& data) {
    m_port->setStationId(tag.station);
    if (m_driver->write(m_port.get(), tag.command(), data))
        return {};
    return {QByteArray(), failureText(tag.station)};
}

TagResult LinkSession::write(const TagDefinition& tag, const QByteArray& data, bool must_read_back,
                             qint64 deadline) {
    if (m_cancelled)
        return {QByteArray(), QLatin1String(Interrupted)};
    if (tag.address.kind != AddressKind::Data)
        return hand(tag, data);  // whatever the state of the line
    m_port->askFor(tag.station); // no probe of another station is worth a person's wait
    const bool others_polled = !(m_session_stations - QSet<int>{tag.station}).isEmpty();
    setSession({tag});
    const auto restored = qScopeGuard([this] { setSession(m_polled); });
    Watch turn_watch, write_watch;
    turn_watch.station = write_watch.station = tag.station;
    turn_watch.limit = write_watch.limit = deadline;
    if (const Result<void> turn = awaitTurn(turn_watch, others_polled); !turn)
        return {QByteArray(), turn.error()};
    const TagResult handed = hand(tag, data);
    return handed.ok() ? checkedWrite(tag, data, must_read_back, write_watch) : handed;
}

} // namespace host
