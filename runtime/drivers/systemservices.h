#ifndef RUNTIME_DRIVERS_SYSTEMSERVICES_H
#define RUNTIME_DRIVERS_SYSTEMSERVICES_H

#include <QtGlobal>

#include <sys/types.h>

/** The machine's clock and processes, for drivers that are not given a Clock.
 *  Any thread. */

/** Milliseconds of the monotonic clock. */
qint64 CurrentMSecsSinceBoot();

/** Sleeps @p msecs milliseconds; signals do not shorten it. Returns 0, or the
 *  errno of another failure. */
int HRSleep(quint32 msecs);

/** Also true for a process that may not be signalled by us. */
bool ProcessIsRunning(pid_t pid);

#endif
