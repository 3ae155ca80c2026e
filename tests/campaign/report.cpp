#include "tests/campaign/report.h"

#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace campaign {

namespace {

constexpr unsigned LongestRunSeconds = 900;

char g_command[128]; // what the handler prints

QString commandText(quint64 seed, quint64 exchanges) {
    return QString::fromLatin1("./campaign --seed %1 --exchanges %2").arg(seed).arg(exchanges);
}

void tellCommand(int signal) {
    static const char text[] = "\nrun it again with: ";
    std::signal(signal, SIG_DFL);
    if (write(STDERR_FILENO, text, sizeof text - 1) < 0 ||
        write(STDERR_FILENO, g_command, sizeof g_command) < 0)
        _exit(1);
    raise(signal);
}

QString line(const char* name, quint64 number) {
    return QString::fromLatin1("%1 %2\n").arg(QLatin1String(name), -52).arg(number, 12);
}

} // namespace

void announceRun(quint64 seed, quint64 exchanges) {
    std::snprintf(g_command, sizeof g_command, "%s\n", qPrintable(commandText(seed, exchanges)));
    for (int signal : {SIGABRT, SIGSEGV, SIGALRM})
        std::signal(signal, tellCommand);
    alarm(LongestRunSeconds);
}

QString reportText(const Figures& figures, double seconds) {
    QString text;
    text += line("runs", figures.runs);
    text += line("exchanges of the driver", figures.exchanges);
    text += line("requests on the line", figures.sent);
    text += line("exchanges that failed, each naming its fault", figures.failed_exchanges);
    text += line("good reads", figures.good_reads);
    text += line("values in them, compared with the controllers", figures.values);
    text += line("reads by callers", figures.caller_reads);
    text += line("  that gave nothing within their time", figures.caller_reads_failed);
    text += line("  at once, with only the last of its values there", figures.hasty_reads);
    text += line("  values left behind by a read that gave up", figures.left_behind);
    text += line("writes confirmed, each made", figures.writes_confirmed);
    text += line("  made more than once, with the same value", figures.writes_repeated);
    text += line("writes failed", figures.writes_failed);
    text += line("writes refused, none made", figures.writes_refused);
    text += line("sessions set", figures.sessions);
    text += line("longest read by a caller, ms", quint64(figures.longest_read_ms));
    text += line("longest recovery after the last fault, ms", quint64(figures.longest_recovery_ms));
    text +=
        line("  runs in which slow stations took longer than promised", figures.late_recoveries);
    text += line("damage that no check of the protocol can see", figures.undetectable);
    for (std::size_t i = 0; i < figures.faults.size(); ++i)
        text += line(qPrintable(QStringLiteral("fault ") + kindName(LineFault::Kind(i))),
                     figures.faults[i]);
    text += QString::fromLatin1("%1 hours of line time in %2 s: %3 exchanges a second; digest %4\n")
                .arg(double(figures.virtual_ms) / 3600000, 0, 'f', 1)
                .arg(seconds, 0, 'f', 1)
                .arg(double(figures.exchanges) / seconds, 0, 'f', 0)
                .arg(figures.digest, 16, 16, QLatin1Char('0'));
    return text;
}

QString failureText(quint64 seed, quint64 exchanges, const Outcome& outcome) {
    return QString::fromLatin1("WRONG, seed %1, step %2: %3\n%4\nrun it again with: %5\n")
        .arg(seed)
        .arg(outcome.step)
        .arg(outcome.failure, outcome.last.join(QLatin1Char('\n')), commandText(seed, exchanges));
}

} // namespace campaign
