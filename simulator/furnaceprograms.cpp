#include "simulator/furnaceprograms.h"

#include <algorithm>

namespace simulator {

namespace {

// What one step of a vacuum furnace switches: events 1 to 12, then inputs 1 to 4.
using Switches = std::array<quint32, 16>;

constexpr std::array<Switches, 4> Phases = {{
    {1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, // evacuate, hold until the vacuum stands
    {1, 0, 1, 1, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, // heat
    {1, 0, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, // soak under nitrogen
    {1, 0, 0, 0, 1, 0, 1, 0, 1, 0, 0, 0, 0, 0, 1, 0}, // cool in gas pulses, end of program
}};

constexpr std::array<quint32, 4> PhaseMinutes = {15, 45, 90, 30};

} // namespace

FurnaceProgram factoryProgram(int number) {
    const int phase = (number - 1) % int(Phases.size());
    const int batch = (number - 1) / int(Phases.size());
    const bool is_hot = phase == 1 || phase == 2;
    const quint32 minutes = PhaseMinutes[std::size_t(phase)] + 5 * quint32(batch);
    FurnaceProgram program = {
        is_hot ? 650 + 50 * quint32(batch) : 80, // degrees
        minutes / 60,
        minutes % 60,
        phase == 2 ? 30u : 0u, // seconds
        5,                     // soak band +
        5,                     // soak band -
        1 + quint32(batch) % 8 // PID group
    };
    const Switches& switches = Phases[std::size_t(phase)];
    std::copy(switches.begin(), switches.end(), program.end() - switches.size());
    return program;
}

} // namespace simulator
