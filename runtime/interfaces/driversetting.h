#ifndef RUNTIME_INTERFACES_DRIVERSETTING_H
#define RUNTIME_INTERFACES_DRIVERSETTING_H

#include <QString>

class QDataStream;

/** Timing and station of a link. The fields, their order and the stream form
 *  are the host's and are stored with projects. A plain record. */
struct DriverSetting {
    /** Text empty, flag unset. */
    DriverSetting(int timeout, int retry, int stationid, int delay);
    /** The same; the host passes two more values that are not kept. */
    DriverSetting(int timeout, int retry, int stationid, int delay, const QString& ignored_text,
                  unsigned short ignored_number);
    /** Keeps @p text and @p flag; the fifth and sixth values are not kept. */
    DriverSetting(int timeout, int retry, int stationid, int delay, const QString& ignored_text,
                  unsigned short ignored_number, const QString& text, bool flag);

    /** Takes all but the flag from @p other. */
    void copy(const DriverSetting& other);

    /** One line of debug output. */
    void dump() const;

    int timeout;   // response timeout, ms
    int retry;     // further attempts after a failed write or request
    int stationid; // station of the link
    int delay;     // pause before each request, ms
    QString text;
    bool flag;
};

/** Four 32-bit signed integers: timeout, retry, stationid, delay. Reading leaves
 *  text and flag alone. */
QDataStream& operator<<(QDataStream& stream, const DriverSetting& setting);
QDataStream& operator>>(QDataStream& stream, DriverSetting& setting);

#endif
