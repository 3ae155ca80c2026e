#ifndef SIMULATOR_MEMORYFILE_H
#define SIMULATOR_MEMORYFILE_H

#include "common/result.h"
#include "simulator/numbers.h"

#include <QString>

#include <map>
#include <vector>

namespace simulator {

/** One line of a memory file. */
struct MemoryEntry {
    StationAddress address;
    quint32 value = 0;
    int line = 0; // of the file, from 1
};

/** Reads "ADDRESS VALUE" lines; see docs/simulator.md. The error is "FILE:LINE:
 *  what is wrong and what would be right". */
Result<std::vector<MemoryEntry>> loadMemoryFile(const QString& file_name);

/** Writes one line per double word of each station, replacing the file only
 *  when all of it could be written. */
Result<void> saveMemoryFile(const QString& file_name,
                            const std::map<quint8, std::map<quint32, quint32>>& stations);

} // namespace simulator

#endif
