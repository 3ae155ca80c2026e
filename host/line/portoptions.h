#ifndef HOST_LINE_PORTOPTIONS_H
#define HOST_LINE_PORTOPTIONS_H

#include "runtime/base/clock.h"
#include "trace/frametrace.h"

#include <functional>

namespace host {

/** What a port does beside carrying bytes, and whose time it keeps. All that is
 *  pointed at outlives the port. */
struct PortOptions {
    trace::FrameTrace* frame_trace = nullptr; // hears of every frame; may be null
    Clock* clock = &Clock::system();
    std::function<qint64()> usecs = trace::monotonicMicroseconds; // of the same clock

    /** Stations that are silent cost the others next to nothing, and a reply whose
     *  shape is not the answer to the request is none. Without, the port waits its
     *  whole timeout for everybody and hands on what comes. */
    bool care = true;
};

} // namespace host

#endif
