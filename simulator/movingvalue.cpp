#include "simulator/movingvalue.h"

#include <cmath>

namespace simulator {

namespace {

constexpr double FullTurn = 6.283185307179586;

} // namespace

quint32 MovingValue::at(qint64 milliseconds) const {
    const double periods = double(milliseconds) / 1000.0 / period_seconds;
    const double phase = periods - std::floor(periods);
    double value = from + step * std::floor(periods); // a counter's
    if (shape == Shape::Ramp)
        value = from + (to - from) * phase;
    else if (shape == Shape::Sine)
        value = (from + to) / 2 + (to - from) / 2 * std::sin(FullTurn * phase);
    // Through 64 bits, modulo 2^32: a counter runs over as a controller's would.
    return quint32(quint64(std::llround(std::fmod(value, 4294967296.0))));
}

} // namespace simulator
