// How long a person waits for a write to be confirmed while another controller of
// the line is dead.
#include "benchmarks/polledline.h"
#include "host/session/linksession.h"
#include "runtime/drivers/dmc50v3/dmc50v3.h"
#include "tests/support/testproject.h"

#include <QtEndian>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <thread>

using namespace host;

namespace {

const quint8 Living = 1;
const quint8 Dead = 2;
const int Writes = 12;
// Between two writes, in ms. No divisor of the probes' pauses, so that writes come at
// all moments of a probe.
const int PauseMsecs = 730;

using SteadyClock = std::chrono::steady_clock;

TagDefinition tagOf(quint8 station) {
    TagDefinition tag;
    tag.name = QString::fromLatin1("%1-NA10").arg(station);
    tag.address = *parseProjectAddress(QString::fromLatin1("NA10"));
    tag.type = *tagTypeByName(QString::fromLatin1("dword"));
    tag.link_id = 1;
    tag.station = station;
    return tag;
}

void createProject(TestProject& project) {
    project.create(Living, {QString::fromLatin1("NA10"), QString::fromLatin1("2-NA10")});
    project.addNode(1, Dead, false);
}

/** Polls both stations once and then lets one die. */
bool awaitDeath(LinkSession& session, simulator::Line& line) {
    const QVector<TagDefinition> tags = {tagOf(Living), tagOf(Dead)};
    session.poll(tags);
    for (const TagResult& result : session.readAll(tags)) {
        if (!result.ok())
            return false;
    }
    line.setFault(Dead, simulator::Fault()); // silence
    while (!session.port().stationHealth(Dead).held_off)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return true;
}

/** Milliseconds from the call to the confirmation; negative when there was none. */
double write(LinkSession& session, quint32 value) {
    QByteArray data(int(sizeof value), '\0');
    qToLittleEndian(value, data.data());
    const SteadyClock::time_point start = SteadyClock::now();
    const bool confirmed = session.write(tagOf(Living), data).ok();
    const std::chrono::duration<double, std::milli> took = SteadyClock::now() - start;
    return confirmed ? took.count() : -1;
}

/** The longest of all writes. */
double longestWrite(LinkSession& session) {
    double longest = 0;
    for (int i = 1; i <= Writes; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(PauseMsecs));
        const double took = write(session, quint32(i));
        if (took < 0)
            return took;
        longest = std::max(longest, took);
    }
    return longest;
}

void writeBesideDead(benchmark::State& state) {
    LinePlan plan;
    plan.stations = {Living, Dead};
    simulator::Line line(simulator::makePtyPort(), plan.lineSettings());
    if (const Result<void> started = line.start(); !started) {
        state.SkipWithError(started.error().toUtf8().constData());
        return;
    }
    TestProject project;
    createProject(project);
    LinkSession session(makePort(line, plan), std::make_unique<DriverDMC50v3>());
    if (!awaitDeath(session, line)) {
        state.SkipWithError("a station does not answer");
        return;
    }
    double longest = 0;
    for (auto _ : state) {
        longest = longestWrite(session);
        state.SetIterationTime(std::max(longest, 0.0) / 1000);
    }
    if (longest < 0)
        state.SkipWithError("a write was not confirmed");
    state.counters["value"] = longest;
    state.counters["limit"] = 1000;
}

} // namespace

BENCHMARK(writeBesideDead)
    ->Name("line_write/ours")
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
