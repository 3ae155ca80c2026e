#include "simulator/linememory.h"

#include "simulator/memoryfile.h"

namespace simulator {

std::vector<Station*> stationsOf(const Line& line, const StationAddress& address) {
    std::vector<Station*> stations;
    for (const auto& [id, station] : line.stations()) {
        if (address.station.value_or(id) == id)
            stations.push_back(station.get());
    }
    return stations;
}

Result<void> loadMemory(const Line& line, const QString& file_name) {
    const Result<std::vector<MemoryEntry>> memory = loadMemoryFile(file_name);
    if (!memory)
        return Failure(memory.error());
    for (const MemoryEntry& entry : *memory) {
        if (stationsOf(line, entry.address).empty())
            return Failure(QString::fromLatin1("%1:%2: there is no station %3 on this line")
                               .arg(file_name)
                               .arg(entry.line)
                               .arg(*entry.address.station));
    }
    for (const MemoryEntry& entry : *memory) {
        for (Station* station : stationsOf(line, entry.address))
            station->write(entry.address.address, entry.value);
    }
    return {};
}

Result<void> saveMemory(const Line& line, const QString& file_name) {
    std::map<quint8, std::map<quint32, quint32>> memories;
    for (const auto& [id, station] : line.stations())
        memories[id] = station->snapshot(line.elapsed());
    return saveMemoryFile(file_name, memories);
}

} // namespace simulator
