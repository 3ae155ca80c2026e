#include "apps/dmc50demo/furnaceline.h"

using namespace host;

namespace {

using simulator::MovingValue;

constexpr double TurnaroundMsecs = 5; // of a controller

struct FurnaceValue {
    const char* tag = nullptr;
    MovingValue value;
};

constexpr MovingValue steady(double value) {
    return {MovingValue::Shape::Ramp, value, value, 0, 1};
}

constexpr MovingValue swinging(double from, double to, double period_seconds) {
    return {MovingValue::Shape::Sine, from, to, 0, period_seconds};
}

constexpr MovingValue counting(double from, double period_seconds) {
    return {MovingValue::Shape::Counter, from, 0, 1, period_seconds};
}

constexpr FurnaceValue Furnace[] = {
    {"Zone 1 temperature", swinging(846, 854, 9)},
    {"Zone 1 set point", steady(850)},
    {"Zone 1 output", swinging(38, 47, 9)},
    {"Zone 2 temperature", swinging(845, 852, 7)},
    {"Zone 2 set point", steady(850)},
    {"Zone 2 output", swinging(40, 52, 7)},
    {"Zone 3 temperature", swinging(842, 853, 11)},
    {"Zone 3 set point", steady(850)},
    {"Zone 3 output", swinging(44, 58, 11)},
    {"Running program", steady(3)},
    {"Program step", steady(4)},
    {"Cycles", counting(1204, 2)},
    {"Heating", steady(0x00A50001)}, // the double word of the alarm and the events, too
    {"Pressure", swinging(72, 98, 6)},
    {"Gas flow", swinging(118, 122, 5)},
    {"Gas set point", steady(120)},
    {"Pump hours", steady(8761)},
    {"Mechanical pump", steady(0x13)}, // the double word of the other pump, too
};

} // namespace

std::unique_ptr<simulator::Line> makeFurnaceLine(const Project& project) {
    simulator::LineSettings settings;
    settings.stations.clear();
    for (const NodeDefinition& node : project.nodes)
        settings.stations.insert(quint8(node.station));
    settings.timing.baud = FurnaceBaud;
    settings.timing.turnaround_ms = TurnaroundMsecs;
    return std::make_unique<simulator::Line>(simulator::makePtyPort(), settings);
}

Result<void> runFurnace(simulator::Line& line, const Project& project) {
    for (const FurnaceValue& entry : Furnace) {
        const TagDefinition* const tag = project.tag(QString::fromLatin1(entry.tag));
        if (!tag)
            return Failure(
                QString::fromLatin1("the project has no tag \"%1\"").arg(QLatin1String(entry.tag)));
        simulator::Station* const station = line.station(quint8(tag->station));
        if (entry.value.from == entry.value.to && entry.value.step == 0)
            station->write(tag->address.dword, quint32(entry.value.from));
        else
            station->setMoving(tag->address.dword, entry.value);
    }
    return {};
}
