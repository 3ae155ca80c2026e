#ifndef HOST_PROJECT_LIMITS_H
#define HOST_PROJECT_LIMITS_H

#include <QtGlobal>

namespace host {

/** Whole numbers from the least to the most. */
struct Range {
    int least;
    int most;

    constexpr bool holds(qint64 number) const { return number >= least && number <= most; }
};

/** What a link's settings may be, in a project file and on a command line alike. */
constexpr Range BaudRange = {300, 4000000};
constexpr Range DataBitsRange = {7, 8};
constexpr Range StopBitsRange = {1, 2};
constexpr Range TimeoutRange = {1, 600000}; // ms
constexpr Range RetryRange = {0, 100};
constexpr Range DelayRange = {0, 10000}; // ms

constexpr Range StationRange = {1, 255};
constexpr Range LinkIdRange = {1, 65535};
constexpr Range IpPortRange = {1, 65535};

} // namespace host

#endif
