#include "runtime/drivers/systemservices.h"

#include "runtime/base/clock.h"

#include <cerrno>
#include <csignal>

qint64 CurrentMSecsSinceBoot() {
    return Clock::system().msecsSinceBoot();
}

int HRSleep(quint32 msecs) {
    return Clock::system().sleepMsecs(msecs);
}

bool ProcessIsRunning(pid_t pid) {
    return kill(pid, 0) == 0 || errno == EPERM;
}
