// What a controller that does not answer costs the others on its line, at 38400
// baud and with the driver's default timing: a timeout of 9 s, one repetition.
#include "benchmarks/polledline.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <numeric>
#include <thread>

namespace {

// A full line of which some die.
const int Stations = 31;
const std::set<quint8> Dead = {3, 9, 15, 21, 27};
const int TagsEach = 50;
const int FullRounds = 5; // they last as long as the longest pause between two probes

// Silent exchanges until a station is held off, then the probes until their pauses
// are 25 s: the rounds that are measured hold one probe of each, as all later ones.
const int RequestsUntilSettled = 3 + 4;

// A line of three with one absent.
const int CarefulRounds = 60;
const int PatientRounds = 1;

double meanOf(const std::vector<double>& rounds) {
    return rounds.empty()
               ? 0
               : std::accumulate(rounds.begin(), rounds.end(), 0.0) / double(rounds.size());
}

std::set<quint8> firstStations(int count) {
    std::set<quint8> stations;
    for (int station = 1; station <= count; ++station)
        stations.insert(quint8(station));
    return stations;
}

LinePlan fullLine() {
    LinePlan plan;
    plan.stations = firstStations(Stations);
    plan.addresses = TagsEach;
    return plan;
}

LinePlan livingLine() {
    LinePlan plan = fullLine();
    for (const quint8 station : Dead)
        plan.stations.erase(station);
    return plan;
}

void awaitSettled(PolledLine& line) {
    while (line.line().counters().faults < quint64(RequestsUntilSettled) * Dead.size())
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
}

/** Both lines run at the same time, so that the machine's load is the same. */
void deadAmongMany(benchmark::State& state) {
    PolledLine full(fullLine());
    PolledLine living(livingLine());
    for (PolledLine* const line : {&full, &living}) {
        if (const Result<void> started = line->start(); !started) {
            state.SkipWithError(started.error().toUtf8().constData());
            return;
        }
    }
    full.rounds(1); // all have been heard
    full.silence(Dead);
    awaitSettled(full);
    std::vector<double> beside_dead;
    std::vector<double> alone;
    for (auto _ : state) {
        std::thread peer([&] { alone = living.rounds(FullRounds); });
        beside_dead = full.rounds(FullRounds);
        peer.join();
        state.SetIterationTime(meanOf(beside_dead) / 1000);
    }
    if (int(beside_dead.size() + alone.size()) < 2 * FullRounds)
        state.SkipWithError("a line stands still");
    state.counters["value"] = meanOf(beside_dead);
    state.counters["limit"] = meanOf(alone);
}

void absentOfThree(benchmark::State& state, bool care, int rounds_wanted) {
    LinePlan plan;
    plan.stations = firstStations(3);
    plan.care = care;
    PolledLine line(plan);
    line.silence({3});
    if (const Result<void> started = line.start(); !started) {
        state.SkipWithError(started.error().toUtf8().constData());
        return;
    }
    std::vector<double> rounds;
    for (auto _ : state) {
        rounds = line.rounds(rounds_wanted);
        state.SetIterationTime(meanOf(rounds) / 1000);
    }
    if (int(rounds.size()) < rounds_wanted) {
        state.SkipWithError("the line stands still");
        return;
    }
    state.counters["worst_ms"] = *std::max_element(rounds.begin(), rounds.end());
}

} // namespace

BENCHMARK(deadAmongMany)
    ->Name("line_dead/ours")
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(absentOfThree, care, true, CarefulRounds)
    ->Name("line_absent/ours")
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(absentOfThree, no_care, false, PatientRounds)
    ->Name("line_absent/no_care")
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
