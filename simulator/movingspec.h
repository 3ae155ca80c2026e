#ifndef SIMULATOR_MOVINGSPEC_H
#define SIMULATOR_MOVINGSPEC_H

#include "simulator/movingvalue.h"
#include "simulator/numbers.h"

namespace simulator {

/** A moving value and where it is seen, or why the text does not name one. */
struct MovingSpec {
    StationAddress address;
    MovingValue value;
    QString error; // empty when good
};

/** Reads "[STATION-]ADDRESS[:KEY=VALUE,...]" with the keys from, to and period
 *  (seconds) of a ramp or a sine; from, step and period of a counter, whose
 *  period is 1 s when not given. */
MovingSpec parseMovingSpec(MovingValue::Shape shape, const QString& text);

} // namespace simulator

#endif
