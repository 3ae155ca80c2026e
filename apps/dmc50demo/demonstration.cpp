#include "apps/dmc50demo/demonstration.h"

#include "apps/dmc50demo/furnaceline.h"
#include "apps/dmc50demo/recipeact.h"
#include "apps/dmc50demo/summary.h"
#include "host/project/paneldirectory.h"
#include "host/project/projectreader.h"
#include "host/session/tagvalue.h"
#include "runtime/interfaces/driverinterface.h"
#include "runtime/interfaces/projectfiles.h"
#include "runtime/panel/kdevice.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>

using namespace host;

namespace {

constexpr int RedrawMsecs = 200;
constexpr int ShortLookMsecs = 2500; // for the viewer, after something has changed
constexpr int LongLookMsecs = 5000;
constexpr int PatienceMsecs = 20000; // for something that takes a few seconds

/** A demo's controllers answer within milliseconds; the sample project's patience
 *  is meant for real lines. */
constexpr int TimeoutMsecs = 500;

const char WrittenTag[] = "Zone 1 set point";
constexpr quint32 WrittenValue = 875;
constexpr quint8 SilentStation = 2;

QString quoted(const QString& text) {
    return QLatin1Char('"') + text + QLatin1Char('"');
}

/** Lets out nothing but the changes of the line's state, which the steps tell. */
void ignoreLog(const QString&) {}

LineStatistics difference(const LineStatistics& later, const LineStatistics& earlier) {
    LineStatistics result;
    result.requests = later.requests - earlier.requests;
    result.bytes_sent = later.bytes_sent - earlier.bytes_sent;
    result.bytes_received = later.bytes_received - earlier.bytes_received;
    return result;
}

} // namespace

bool Demonstration::succeeds(const Outcome& outcome) {
    if (!outcome)
        m_screen.failed(outcome.error());
    return outcome.has_value();
}

bool Demonstration::prepare(const QString& project_directory, const QString& panel_directory,
                            const QString& plugin_path) {
    return succeeds(compile(project_directory, panel_directory)) && succeeds(startLine()) &&
           succeeds(loadDriver(plugin_path));
}

bool Demonstration::run() {
    const bool ok = succeeds(openSession()) && succeeds(showValues()) && succeeds(writeValue()) &&
                    succeeds(silenceStation()) && succeeds(recoverStation()) &&
                    succeeds(transferRecipes());
    if (ok)
        summarize();
    m_session.reset(); // on the thread that used it
    return ok;
}

Demonstration::Outcome Demonstration::compile(const QString& project_directory,
                                              const QString& panel_directory) {
    m_screen.begin(QStringLiteral("Compiling the project ") + project_directory);
    QDir().mkpath(panel_directory);
    const QDir panel(panel_directory);
    const ProjectReading project =
        buildPanelDirectory(project_directory, panel_directory).and_then([&panel] {
            return readProjectFile(panel.filePath(QLatin1String(ProjectFile)));
        });
    if (!project)
        return Failure(project.error().join(QLatin1Char('\n')));
    m_project = *project;
    const QFileInfo database(projectDatabasePath(panel_directory));
    if (database.size() == 0)
        return Failure(QStringLiteral("There is no database ") + database.filePath());
    setPanelDirectory(panel_directory);
    m_screen.done(QString::fromLatin1("%1 tags of %2 stations in its SQLite database, %3 bytes")
                      .arg(m_project.tags.size())
                      .arg(m_project.nodes.size())
                      .arg(database.size()));
    return {};
}

Demonstration::Outcome Demonstration::startLine() {
    m_screen.begin(QStringLiteral("Starting a simulated RS-485 line"));
    m_line = makeFurnaceLine(m_project);
    const Outcome started =
        runFurnace(*m_line, m_project).and_then([this] { return m_line->start(); });
    if (!started)
        return started;
    for (LinkDefinition& link : m_project.links) {
        link.port = m_line->devicePath();
        link.timeout_ms = TimeoutMsecs;
        link.retries = 1;
    }
    m_screen.done(QString::fromLatin1("DMC50 stations 1 and 2 on the pty %1, %2 baud")
                      .arg(m_line->devicePath())
                      .arg(FurnaceBaud));
    return {};
}

Demonstration::Outcome Demonstration::loadDriver(const QString& path) {
    m_screen.begin(QStringLiteral("Loading the plug-in ") + QDir().relativeFilePath(path));
    KDevice::getInstance(); // as in the panel, on the GUI thread
    m_operator = std::make_unique<PanelOperator>();
    Result<std::unique_ptr<DriverPlugin>> plugin = DriverPlugin::load(path);
    if (!plugin)
        return Failure(plugin.error());
    m_plugin = std::move(*plugin);
    const std::unique_ptr<DriverInterface> driver = m_plugin->createDriver();
    m_screen.done(QString::fromLatin1("driver %1 for %2, version %3")
                      .arg(quoted(driver->name()), driver->vender(), driver->getVersionNumber()));
    return {};
}

Demonstration::Outcome Demonstration::openSession() {
    QSet<int> links;
    for (const LinkDefinition& link : m_project.links)
        links.insert(link.id);
    PanelSetup setup;
    setup.log = ignoreLog;
    Result<std::unique_ptr<PanelSession>> session =
        PanelSession::open(m_project, links, *m_plugin, setup);
    if (!session)
        return Failure(session.error());
    m_session = std::move(*session);
    m_tags = tagsToShow(m_project, m_screen.rowsForTable());
    return {};
}

void Demonstration::look() {
    m_rows = readRows(*m_session, m_tags, m_rows);
    m_screen.refresh(m_rows);
    m_session->observe(RedrawMsecs);
}

void Demonstration::letViewerLook(int msecs) {
    if (m_brisk)
        look();
    else
        lookUntil(msecs, [] { return false; });
}

/** False when the time is over before the condition holds. */
bool Demonstration::lookUntil(int msecs, const std::function<bool()>& condition) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < msecs) {
        look();
        if (condition())
            return true;
    }
    return false;
}

QString Demonstration::stationError(int station) {
    const auto row = std::find_if(m_rows.begin(), m_rows.end(), [station](const TagRow& candidate) {
        return candidate.tag.station == station && !candidate.error.isEmpty();
    });
    return row == m_rows.end() ? QString() : row->error;
}

quint32 Demonstration::memory(const TagDefinition& tag) const {
    return m_line->station(quint8(tag.station))->read(tag.address.dword, m_line->elapsed());
}

int Demonstration::valuesUnlike(const QVector<TagRow>& before) const {
    int count = 0;
    for (int i = 0; i < m_rows.size(); ++i)
        count += before[i].value != m_rows[i].value ? 1 : 0;
    return count;
}

Demonstration::Outcome Demonstration::showValues() {
    m_screen.begin(QStringLiteral("Reading the project's tags"));
    m_session->poll(m_tags);
    look();
    const QVector<TagRow> first = m_rows;
    const LineStatistics before = m_session->statistics();
    QElapsedTimer timer;
    timer.start();
    letViewerLook(LongLookMsecs);
    if (!lookUntil(PatienceMsecs, [&] { return valuesUnlike(first) > 0; }))
        return Failure(QStringLiteral("No value has changed, though the furnace is running"));
    m_calm_msecs = timer.elapsed();
    m_calm = difference(m_session->statistics(), before);
    for (const TagRow& row : m_rows) {
        if (row.value.isEmpty() || !row.error.isEmpty())
            return Failure(
                QString::fromLatin1("%1 has no value: %2").arg(quoted(row.tag.name), row.error));
    }
    m_screen.keep(m_rows);
    m_screen.done(QString::fromLatin1("%1 values read, %2 of them have changed meanwhile")
                      .arg(m_rows.size())
                      .arg(valuesUnlike(first)));
    return {};
}

Demonstration::Outcome Demonstration::writeValue() {
    const TagDefinition* const tag = m_project.tag(QLatin1String(WrittenTag));
    const quint32 before = memory(*tag);
    m_screen.begin(
        QString::fromLatin1("Writing %1 to %2").arg(WrittenValue).arg(quoted(tag->name)));
    const Result<QByteArray> bytes = parseValue(*tag, QString::number(WrittenValue));
    if (!bytes)
        return Failure(bytes.error());
    const TagResult result = m_session->link(tag->link_id).write(*tag, *bytes);
    if (!result.ok())
        return Failure(result.error);
    const quint32 after = memory(*tag);
    if (before == after || after != WrittenValue)
        return Failure(QString::fromLatin1("The controller's memory shows %1").arg(after));
    letViewerLook(ShortLookMsecs);
    m_screen.keep(m_rows);
    m_screen.done(QString::fromLatin1("double word %1 of station %2 was %3, is %4 now")
                      .arg(tag->address.dword, 8, 16, QLatin1Char('0'))
                      .arg(tag->station)
                      .arg(before)
                      .arg(after));
    return {};
}

Demonstration::Outcome Demonstration::silenceStation() {
    m_screen.begin(QString::fromLatin1("Station %1 falls silent").arg(SilentStation));
    m_line->setFault(SilentStation, simulator::Fault());
    const bool told =
        lookUntil(PatienceMsecs, [this] { return !stationError(SilentStation).isEmpty(); });
    if (!told)
        return Failure(QStringLiteral("No error has shown up"));
    const QString error = stationError(SilentStation);
    if (!error.endsWith(QLatin1String("DMC50 no response")))
        return Failure(QStringLiteral("Another error has shown up: ") + error);
    letViewerLook(ShortLookMsecs);
    m_screen.keep(m_rows);
    m_screen.done(quoted(error));
    return {};
}

Demonstration::Outcome Demonstration::recoverStation() {
    m_screen.begin(QString::fromLatin1("Station %1 answers again").arg(SilentStation));
    m_line->clearFault(SilentStation);
    QElapsedTimer timer;
    timer.start();
    const bool recovered =
        lookUntil(PatienceMsecs, [this] { return stationError(SilentStation).isEmpty(); });
    const qint64 msecs = timer.elapsed();
    if (!recovered)
        return Failure(stationError(SilentStation));
    letViewerLook(ShortLookMsecs);
    m_screen.keep(m_rows);
    m_screen.done(QString::fromLatin1("its values are fresh after %1 ms").arg(msecs));
    return {};
}

/** The controllers' other values are left alone meanwhile, so that the line is free
 *  for the programs. */
Demonstration::Outcome Demonstration::transferRecipes() {
    if (!m_stick)
        return Failure(m_stick.error());
    m_session->poll(m_tags.mid(0, 1));
    RecipeAct act(m_screen, *m_session, m_project, *m_line, *m_operator, *m_stick);
    return act.pull().and_then([&act] { return act.pushEdited(); }).and_then([&act] {
        return act.pushBad();
    });
}

void Demonstration::summarize() {
    const simulator::LineCounters line = m_line->counters();
    Summary summary;
    summary.total = m_session->statistics();
    summary.calm = m_calm;
    summary.calm_msecs = m_calm_msecs;
    summary.struck_by_faults = line.faults;
    summary.stations = m_project.nodes.size();
    m_screen.print(summary.lines());
}
