#ifndef SIMULATOR_FAULTSCRIPT_H
#define SIMULATOR_FAULTSCRIPT_H

#include "simulator/fault.h"

#include <vector>

namespace simulator {

/** The faults of a script file, or why it cannot be used. */
struct FaultScript {
    std::vector<Fault> faults;
    std::optional<quint32> seed;
    QString error; // "FILE:LINE: what is wrong and what would be right", or empty
};

/** Reads a TOML file of [[fault]] tables; see docs/simulator.md. All or nothing:
 *  with an error there are no faults. */
FaultScript loadFaultScript(const QString& file_name);

} // namespace simulator

#endif
