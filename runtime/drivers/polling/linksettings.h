#ifndef RUNTIME_DRIVERS_POLLING_LINKSETTINGS_H
#define RUNTIME_DRIVERS_POLLING_LINKSETTINGS_H

#include <QtGlobal>

class AbstractDeviceInterface;

/** How patiently a link is used: the port's settings, within limits that no
 *  controller is happy below. */
struct LinkSettings {
    explicit LinkSettings(AbstractDeviceInterface& port);

    /** Longest time that a caller waits for the line, ms. */
    qint64 waitBudgetMsecs() const { return timeout_ms * (qint64(retries) + 1); }

    quint32 frame_interval_ms; // pause before every request; at least 10
    qint64 timeout_ms;         // for a reply; at least 3000
    quint32 retries;           // further attempts of a failed request
};

#endif
