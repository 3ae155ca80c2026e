#ifndef SIMULATOR_LINECOUNTERS_H
#define SIMULATOR_LINECOUNTERS_H

#include <QtGlobal>

namespace simulator {

/** What has happened on a line since it was made. */
struct LineCounters {
    quint64 reads = 0;          // RN requests to stations of this line
    quint64 writes = 0;         // WG and WN requests to them
    quint64 refused = 0;        // answered with an end code because of their contents
    quint64 replies = 0;        // begun, faulty ones included
    quint64 faults = 0;         // requests struck by a fault
    quint64 bad_checksums = 0;  // requests left without answer for it
    quint64 unreadable = 0;     // other frames that are no request
    quint64 other_stations = 0; // requests to stations that are not here
    quint64 noise_bytes = 0;    // bytes received outside of frames
    quint64 bytes_received = 0;
    quint64 bytes_sent = 0;
};

} // namespace simulator

#endif
