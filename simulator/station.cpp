#include "simulator/station.h"

#include "simulator/furnaceprograms.h"

#include <algorithm>
#include <array>
#include <utility>

namespace simulator {

namespace {

// What a panel writes to make a station answer fast, and what it then expects.
constexpr std::array<std::pair<quint32, quint32>, 4> LowLatencySettings = {{
    {0x2012, 1},
    {0x2013, 5},
    {0x2014, 200},
    {0x2015, 5},
}};
constexpr quint32 LowLatencyReady = 200;

} // namespace

Station::Station(quint8 id) : m_id(id) {
    for (int number = 1; number <= ProgramCount; ++number) {
        quint32 address = ProgramBase + ProgramSpacing * quint32(number - 1);
        for (quint32 value : factoryProgram(number))
            m_memory[address++] = value;
    }
}

quint32 Station::read(quint32 address, qint64 now) const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return readLocked(address, now);
}

void Station::write(quint32 address, quint32 value) {
    std::lock_guard<std::mutex> lock(m_mutex);
    writeLocked(address, value);
}

void Station::setMoving(quint32 address, const MovingValue& moving) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_moving[address] = moving;
}

Reply Station::answer(const Request& request, qint64 now) {
    std::lock_guard<std::mutex> lock(m_mutex);
    Reply reply;
    reply.station = m_id;
    reply.subaddress = request.subaddress;
    if (request.command == Command::ReadList) {
        for (quint32 address : request.addresses)
            reply.data.push_back(readLocked(address, now));
        return reply;
    }
    for (std::size_t i = 0; i < request.addresses.size(); ++i)
        writeLocked(request.addresses[i], request.values[i]);
    return reply;
}

std::map<quint32, quint32> Station::snapshot(qint64 now) const {
    std::lock_guard<std::mutex> lock(m_mutex);
    std::map<quint32, quint32> values = m_memory;
    for (const auto& [address, moving] : m_moving)
        values[address] = moving.at(now);
    return values;
}

quint32 Station::readLocked(quint32 address, qint64 now) const {
    if (address == LowLatencyCheckAddress) {
        const bool ready = std::all_of(
            LowLatencySettings.begin(), LowLatencySettings.end(),
            [&](const auto& item) { return readLocked(item.first, now) == item.second; });
        return ready ? LowLatencyReady : 0;
    }
    const auto moving = m_moving.find(address);
    if (moving != m_moving.end())
        return moving->second.at(now);
    const auto stored = m_memory.find(address);
    return stored != m_memory.end() ? stored->second : 0;
}

void Station::writeLocked(quint32 address, quint32 value) {
    if (address == LowLatencyCheckAddress)
        return;
    m_moving.erase(address);
    m_memory[address] = value;
}

} // namespace simulator
