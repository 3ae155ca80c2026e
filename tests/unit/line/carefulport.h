#ifndef TESTS_UNIT_LINE_CAREFULPORT_H
#define TESTS_UNIT_LINE_CAREFULPORT_H

#include "host/line/hostport.h"
#include "tests/support/scheduledclock.h"
#include "tests/unit/line/stationschannel.h"

#include <QBuffer>

#include <memory>
#include <optional>

/** A port with stations behind it, in virtual time, asked as the driver asks. */
class CarefulPort {
public:
    static constexpr int TimeoutMsecs = 9000;
    static constexpr int Repetitions = 1;
    static constexpr int PauseMsecs = 20; // before each request

    explicit CarefulPort(bool care = true,
                         const DriverSetting& timing = DriverSetting(TimeoutMsecs, Repetitions, 1,
                                                                     PauseMsecs));

    /** One request, and all that the driver hears of it. */
    QByteArray exchange(const QByteArray& request);

    /** A read with the driver's repetitions: the values, if one attempt brought what the
     *  driver takes for the answer. */
    std::optional<QList<quint32>> read(int station, const QList<quint32>& addresses);

    /** A write with the driver's repetitions: confirmed or not. */
    bool write(int station, quint32 address, quint32 value);

    QList<QByteArray> traceLines();

    /** Lines of the trace that hold @p text. */
    int countTraced(const char* text);

    host::StationHealth health(int station) { return port->stationHealth(station); }
    qint64 now() { return clock.msecsSinceBoot(); }

    ScheduledClock clock;
    QBuffer trace;
    trace::FrameTrace frame_trace{&trace};
    StationsChannel& channel = *new StationsChannel(clock); // the port's
    std::unique_ptr<host::HostPort> port;

private:
    std::optional<QByteArray> ask(int station, const QByteArray& request);
};

QByteArray readRequest(int station, const QList<quint32>& addresses);

/** @p count addresses from @p first on. */
QList<quint32> addressRun(quint32 first, int count);

#endif
