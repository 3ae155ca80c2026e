#include "runtime/base/clock.h"

#include <cerrno>
#include <ctime>

namespace {

class SystemClock : public Clock {
public:
    qint64 msecsSinceBoot() override {
        timespec now = {};
        clock_gettime(CLOCK_MONOTONIC, &now);
        return qint64(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
    }

    int sleepMsecs(quint32 msecs) override {
        timespec left = {};
        left.tv_sec = time_t(msecs / 1000);
        left.tv_nsec = long(msecs % 1000) * 1000000L;
        while (nanosleep(&left, &left) != 0) {
            if (errno != EINTR)
                return errno;
        }
        return 0;
    }
};

} // namespace

Clock& Clock::system() {
    static SystemClock* const clock = new SystemClock; // never deleted: threads outlive main()
    return *clock;
}
