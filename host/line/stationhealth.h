#ifndef HOST_LINE_STATIONHEALTH_H
#define HOST_LINE_STATIONHEALTH_H

#include <QtGlobal>

namespace host {

/** What a port knows of one station. */
struct StationHealth {
    enum class State {
        Unknown, // not asked yet
        Up,      // it answered when last asked
        Suspect, // silent since, but not for a whole response timeout
        Down     // silent to several requests, for longer than it may take to answer
    };
    State state = State::Unknown;
    qint64 since_ms = 0;   // when it came into that state, on the port's clock
    bool held_off = false; // its requests are withheld, but for a probe now and then
    quint64 answers = 0;
    qint64 mean_usecs = 0; // of its answers: request sent to reply complete
    qint64 worst_usecs = 0;
    quint64 withheld = 0; // requests that the port answered as a silent station would
};

/** "unknown", "up", "suspect", "down". */
inline const char* stateName(StationHealth::State state) {
    switch (state) {
    case StationHealth::State::Up:
        return "up";
    case StationHealth::State::Suspect:
        return "suspect";
    case StationHealth::State::Down:
        return "down";
    case StationHealth::State::Unknown:
        break;
    }
    return "unknown";
}

} // namespace host

#endif
