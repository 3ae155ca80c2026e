#include "runtime/interfaces/driversetting.h"

#include <QDataStream>
#include <QDebug>

// The host's contract leaves the flag unset here; false is as good as any value
// and cannot be read as indeterminate.
DriverSetting::DriverSetting(int timeout_ms, int retries, int station, int delay_ms)
    : timeout(timeout_ms), retry(retries), stationid(station), delay(delay_ms), flag(false) {}

DriverSetting::DriverSetting(int timeout_ms, int retries, int station, int delay_ms,
                             const QString& /*ignored_text*/, unsigned short /*ignored_number*/)
    : timeout(timeout_ms), retry(retries), stationid(station), delay(delay_ms), flag(false) {}

DriverSetting::DriverSetting(int timeout_ms, int retries, int station, int delay_ms,
                             const QString& /*ignored_text*/, unsigned short /*ignored_number*/,
                             const QString& kept_text, bool kept_flag)
    : timeout(timeout_ms)
    , retry(retries)
    , stationid(station)
    , delay(delay_ms)
    , text(kept_text)
    , flag(kept_flag) {}

void DriverSetting::copy(const DriverSetting& other) {
    timeout = other.timeout;
    retry = other.retry;
    stationid = other.stationid;
    delay = other.delay;
    text = other.text;
}

void DriverSetting::dump() const {
    qDebug() << "timeout:" << timeout << "retry:" << retry << "stationid:" << stationid
             << "delay:" << delay;
}

QDataStream& operator<<(QDataStream& stream, const DriverSetting& setting) {
    return stream << qint32(setting.timeout) << qint32(setting.retry) << qint32(setting.stationid)
                  << qint32(setting.delay);
}

QDataStream& operator>>(QDataStream& stream, DriverSetting& setting) {
    qint32 timeout = 0, retry = 0, stationid = 0, delay = 0;
    stream >> timeout >> retry >> stationid >> delay;
    setting.timeout = timeout;
    setting.retry = retry;
    setting.stationid = stationid;
    setting.delay = delay;
    return stream;
}
