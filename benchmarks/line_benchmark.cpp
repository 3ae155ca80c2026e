// How much of a real line's time the driver leaves unused: the cycle time of
// 1000 addresses on 4 stations at 38400 baud, beside what wire, turn-around and
// frame pauses take at the least.
#include "benchmarks/polledline.h"

#include <benchmark/benchmark.h>

#include <numeric>

namespace {

const int Stations = 4;
const int AddressesEach = 250;
const int Cycles = 2;

double shortestCycleMsecs(const LinePlan& plan) {
    const int request = 17 + 8 * LinePlan::AddressesPerFrame;
    const int reply = 13 + 8 * LinePlan::AddressesPerFrame;
    const double wire = double(plan.lineTiming().wireTime(request + reply)) / 1e6;
    return Stations * plan.framesOfStation() *
           (wire + LinePlan::TurnaroundMsecs + plan.timing.delay);
}

void lineCycle(benchmark::State& state) {
    LinePlan plan;
    for (int station = 1; station <= Stations; ++station)
        plan.stations.insert(quint8(station));
    plan.addresses = AddressesEach;
    PolledLine line(plan);
    if (const Result<void> started = line.start(); !started) {
        state.SkipWithError(started.error().toUtf8().constData());
        return;
    }
    double cycle = 0;
    for (auto _ : state) {
        const std::vector<double> rounds = line.rounds(Cycles);
        cycle = std::accumulate(rounds.begin(), rounds.end(), 0.0) / Cycles;
        state.SetIterationTime(cycle / 1000);
    }
    if (line.thread().hasError())
        state.SkipWithError(line.thread().getLastError().toUtf8().constData());
    state.counters["value"] = cycle;
    state.counters["limit"] = shortestCycleMsecs(plan);
}

} // namespace

BENCHMARK(lineCycle)
    ->Name("line/ours")
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
