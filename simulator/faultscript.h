#ifndef SIMULATOR_FAULTSCRIPT_H
#define SIMULATOR_FAULTSCRIPT_H

#include "simulator/fault.h"

#include <vector>

namespace simulator {

/** What a script file says. */
struct FaultScript {
    std::vector<Fault> faults;
    std::optional<quint32> seed;
};

/** Reads a TOML file of [[fault]] tables; see docs/simulator.md. The error is
 *  "FILE:LINE: what is wrong and what would be right". */
Result<FaultScript> loadFaultScript(const QString& file_name);

} // namespace simulator

#endif
