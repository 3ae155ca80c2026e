#ifndef SIMULATOR_MOVINGSPEC_H
#define SIMULATOR_MOVINGSPEC_H

#include "common/result.h"
#include "simulator/movingvalue.h"
#include "simulator/numbers.h"

namespace simulator {

/** A moving value and where it is seen. */
struct MovingSpec {
    StationAddress address;
    MovingValue value;
};

/** Reads "[STATION-]ADDRESS[:KEY=VALUE,...]" with the keys from, to and period
 *  (seconds) of a ramp or a sine; from, step and period of a counter, whose
 *  period is 1 s when not given. */
Result<MovingSpec> parseMovingSpec(MovingValue::Shape shape, const QString& text);

} // namespace simulator

#endif
