#ifndef SIMULATOR_LINETIMING_H
#define SIMULATOR_LINETIMING_H

#include <QtGlobal>

#include <algorithm>

namespace simulator {

/** How long things take on the simulated line. */
struct LineTiming {
    int baud = 0;             // bits a second; 0: bytes take no time
    double turnaround_ms = 0; // from the end of a request to the start of its reply

    /** Start bit, 8 data bits, parity bit, stop bit. */
    static constexpr int BitsPerCharacter = 11;

    /** Nanoseconds that @p characters occupy the line, exact over any number. */
    qint64 wireTime(qint64 characters) const {
        return baud > 0 ? characters * BitsPerCharacter * 1000000000 / baud : 0;
    }

    /** Characters that are handed over in one go: a millisecond of the line, so
     *  that the receiver sees them arrive evenly at little cost. */
    int chunk() const { return std::max(1, baud / (BitsPerCharacter * 1000)); }
};

} // namespace simulator

#endif
