#include "tests/campaign/scenario.h"

#include "tests/campaign/dice.h"

#include <algorithm>

namespace campaign {

namespace {

enum Stream : quint64 { ProjectDice = 1, FaultDice };

constexpr int MostStations = 31;
constexpr int MostTags = 1000;
constexpr int LongestBlock = 40;
constexpr quint32 FirstAddress = 0x3000; // behind the controller's own double words
constexpr int LongestOutageMsecs = 90000;

const std::vector<int> Bauds = {9600, 19200, 38400, 38400, 115200};
const std::vector<int> Timeouts = {2000, 3000, 3000, 9000};
const std::vector<int> FrameIntervals = {0, 10, 20, 20, 50};
const std::vector<double> FaultRates = {0.002, 0.01, 0.03, 0.1};

void chooseStations(Scenario& scenario, Dice& dice) {
    const int count = dice.chance(0.3) ? dice.between(1, 3) : dice.between(1, MostStations);
    std::set<quint8> ids;
    while (int(ids.size()) < count)
        ids.insert(quint8(dice.chance(0.9) ? dice.between(1, MostStations) : dice.between(1, 255)));
    scenario.stations.assign(ids.begin(), ids.end());
    if (dice.chance(0.15))
        scenario.low_latency.insert(dice.pick(scenario.stations));
}

/** Every station gets one block at least; gaps lie between the blocks of one. */
void chooseBlocks(Scenario& scenario, Dice& dice) {
    std::map<quint8, quint32> next;
    int left = dice.chance(0.5) ? dice.between(1, 60) : dice.between(1, MostTags);
    for (std::size_t i = 0; i < scenario.stations.size() || left > 0; ++i) {
        const quint8 station =
            i < scenario.stations.size() ? scenario.stations[i] : dice.pick(scenario.stations);
        quint32& first = next.try_emplace(station, FirstAddress).first->second;
        first += quint32(dice.between(1, 5));
        const int count = std::clamp(left, 1, dice.between(1, LongestBlock));
        scenario.blocks.push_back({station, first, count});
        first += quint32(count);
        left -= count;
    }
}

void chooseLine(Scenario& scenario, Dice& dice) {
    scenario.baud = dice.pick(Bauds);
    scenario.timeout_ms = dice.pick(Timeouts);
    scenario.retries = dice.between(0, 2);
    scenario.frame_interval_ms = dice.pick(FrameIntervals);
    scenario.turnaround_ms = dice.between(1, 40);
}

bool lasts(LineFault::Kind kind) {
    return kind == LineFault::Kind::Dead || kind == LineFault::Kind::PowerLoss ||
           kind == LineFault::Kind::Unplugged || kind == LineFault::Kind::Close;
}

LineFault makeFault(quint64 request, int timeout_ms, Dice& dice) {
    LineFault fault;
    fault.request = request;
    fault.kind = LineFault::Kind(dice.between(0, FaultKinds - 1));
    if (lasts(fault.kind) && dice.chance(0.6)) // they would rule all the time
        fault.kind = LineFault::Kind::Late;
    const int longest = lasts(fault.kind) && dice.chance(0.2) ? LongestOutageMsecs : timeout_ms;
    fault.ms = dice.chance(0.5) ? dice.between(1, 100) : dice.between(1, longest);
    fault.at = dice.between(1, 500);
    fault.value = dice.between(1, 255);
    return fault;
}

/** Single ones, and now and then some in a row. */
void chooseFaults(Scenario& scenario, int requests, Dice& dice) {
    const double rate = dice.pick(FaultRates);
    int row = 0;
    for (int request = 1; request <= requests; ++request) {
        if (row == 0 && !dice.chance(rate))
            continue;
        row = row > 0 ? row - 1 : dice.chance(0.1) ? dice.between(1, 8) : 0;
        scenario.faults.push_back(makeFault(quint64(request), scenario.timeout_ms, dice));
    }
}

} // namespace

QStringList Scenario::tags() const {
    QStringList tags;
    for (const Block& block : blocks) {
        for (int i = 0; i < block.count; ++i)
            tags += QString::fromLatin1("%1-NA%2")
                        .arg(block.station)
                        .arg(block.first + quint32(i), 0, 16);
    }
    for (quint8 station : low_latency)
        tags += QString::fromLatin1("%1-LOWLATENCY").arg(station);
    return tags;
}

Scenario makeScenario(quint64 seed, int requests) {
    Scenario scenario;
    scenario.seed = seed;
    Dice project(seed, ProjectDice);
    chooseStations(scenario, project);
    chooseBlocks(scenario, project);
    chooseLine(scenario, project);
    Dice faults(seed, FaultDice);
    chooseFaults(scenario, requests, faults);
    return scenario;
}

} // namespace campaign
