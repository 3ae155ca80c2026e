#include "apps/dmc50demo/summary.h"

#include "apps/dmc50demo/furnaceline.h"
#include "simulator/linetiming.h"

namespace {

QString number(double value, const char* unit) {
    return QString::fromLatin1("%1 %2").arg(value, 0, 'f', 1).arg(QLatin1String(unit));
}

QString line(const char* name, const QString& text) {
    return QString::fromLatin1("  %1 %2").arg(QLatin1String(name), -22).arg(text);
}

} // namespace

QStringList Summary::lines() const {
    simulator::LineTiming timing;
    timing.baud = FurnaceBaud;
    const double wire_msecs =
        double(timing.wireTime(qint64(calm.bytes_sent + calm.bytes_received))) / 1e6;
    const double cycles = double(calm.requests) / stations;
    return {
        QStringLiteral("Summary"),
        line("frames",
             QString::fromLatin1("%1 sent, %2 answered").arg(total.requests).arg(total.replies)),
        line("retries", QString::number(total.repeats)),
        line("errors", QString::fromLatin1("%1 silent, %2 cut short; the simulator struck %3")
                           .arg(total.silent)
                           .arg(total.incomplete)
                           .arg(struck_by_faults)),
        line("answer after",
             number(double(total.reply_usecs) / 1000 / double(total.replies), "ms") +
                 QStringLiteral(" on average, ") +
                 number(double(total.longest_reply_usecs) / 1000, "ms at most")),
        line("cycle of all stations", number(double(calm_msecs) / cycles, "ms")),
        line("share of the line used", number(100 * wire_msecs / double(calm_msecs), "%")),
    };
}
