#ifndef RUNTIME_DRIVERS_POLLING_RETRY_H
#define RUNTIME_DRIVERS_POLLING_RETRY_H

#include <QtGlobal>

/** Calls @p attempt until it returns true, at most 1 + @p retries times. Returns
 *  whether it did. */
template <typename Attempt>
bool tryRepeatedly(quint32 retries, Attempt attempt) {
    for (quint32 left = retries; !attempt(); --left) {
        if (left == 0)
            return false;
    }
    return true;
}

#endif
