#ifndef SIMULATOR_MOVINGVALUE_H
#define SIMULATOR_MOVINGVALUE_H

#include <QtGlobal>

namespace simulator {

/** A value that changes by itself, as a pure function of time. */
struct MovingValue {
    enum class Shape {
        Ramp,    // rises evenly from `from` to `to`, then starts again
        Sine,    // swings between `from` and `to`, starting in the middle
        Counter, // `from`, then `step` more at the end of every period
    };
    Shape shape = Shape::Ramp;
    double from = 0;
    double to = 1000;
    double step = 1;
    double period_seconds = 10; // above 0

    /** The double word at @p milliseconds since the line was made, rounded;
     *  negative values as two's complement. */
    quint32 at(qint64 milliseconds) const;
};

} // namespace simulator

#endif
