#ifndef SIMULATOR_LINEMEMORY_H
#define SIMULATOR_LINEMEMORY_H

#include "simulator/line.h"
#include "simulator/numbers.h"

namespace simulator {

/** The stations that @p address means: the one it names, if the line has it, or
 *  all of them. */
std::vector<Station*> stationsOf(const Line& line, const StationAddress& address);

/** Writes a memory file into the stations of @p line. With an error nothing is
 *  written. */
Result<void> loadMemory(const Line& line, const QString& file_name);

/** Saves all stations of @p line; loadMemory() takes the file. */
Result<void> saveMemory(const Line& line, const QString& file_name);

} // namespace simulator

#endif
