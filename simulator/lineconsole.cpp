#include "simulator/lineconsole.h"

#include "simulator/line.h"
#include "simulator/numbers.h"

#include <QStringList>

#include <array>

namespace simulator {

namespace {

constexpr quint32 LongestDump = 1000;

const char HelpText[] = "station STATION ok|silent|FAULT\n"
                        "dump STATION ADDRESS COUNT\n"
                        "set STATION ADDRESS VALUE\n"
                        "counters\n"
                        "quit";

/** The station that @p text names, or null. */
Station* findStation(const Line& line, const QString& text) {
    const std::optional<quint8> id = parseStation(text);
    return id ? line.station(*id) : nullptr;
}

QString noStation(const QString& text) {
    return QString::fromLatin1("error: there is no station \"%1\" on this line").arg(text);
}

QString usage(const char* text) {
    return QString::fromLatin1("error: must be %1").arg(QLatin1String(text));
}

} // namespace

LineConsole::LineConsole(Line& line) : m_line(line) {}

QString LineConsole::execute(const QString& command) {
    const QStringList words = command.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty())
        return QString();
    const QString& verb = words.first();
    if (verb == QLatin1String("station"))
        return station(words);
    if (verb == QLatin1String("dump"))
        return dump(words);
    if (verb == QLatin1String("set"))
        return set(words);
    if (verb == QLatin1String("counters"))
        return counters();
    if (verb == QLatin1String("quit"))
        return quit();
    const QString help = QString::fromLatin1(HelpText);
    return verb == QLatin1String("help")
               ? help
               : QString::fromLatin1("error: unknown command \"%1\"; the commands are:\n%2")
                     .arg(verb, help);
}

QString LineConsole::station(const QStringList& words) {
    if (words.size() != 3)
        return usage("station STATION ok|silent|FAULT");
    const Station* const target = findStation(m_line, words.at(1));
    if (!target)
        return noStation(words.at(1));
    const QString& state = words.at(2);
    if (state == QLatin1String("ok")) {
        m_line.clearFault(target->id());
        return QString::fromLatin1("station %1: ok").arg(target->id());
    }
    const Result<Fault> fault =
        parseFault(state == QLatin1String("silent") ? faultName(Fault::Kind::Silence) : state);
    if (!fault)
        return QLatin1String("error: ") + fault.error();
    m_line.setFault(target->id(), *fault);
    return QString::fromLatin1("station %1: %2").arg(target->id()).arg(describeFault(*fault));
}

QString LineConsole::dump(const QStringList& words) {
    const std::optional<quint32> address = parseNumber(words.value(2));
    const std::optional<quint32> count = parseNumber(words.value(3));
    if (words.size() != 4 || !address || !count || *count < 1 || *count > LongestDump)
        return usage("dump STATION ADDRESS COUNT, COUNT from 1 to 1000");
    const Station* const target = findStation(m_line, words.at(1));
    if (!target)
        return noStation(words.at(1));
    QStringList lines;
    for (quint32 i = 0; i < *count; ++i) {
        const quint32 value = target->read(*address + i, m_line.elapsed());
        lines += QString::fromLatin1("%1 %2 %3")
                     .arg(hexText(*address + i), hexText(value), QString::number(value));
    }
    return lines.join(QLatin1Char('\n'));
}

QString LineConsole::set(const QStringList& words) {
    const std::optional<quint32> address = parseNumber(words.value(2));
    const std::optional<quint32> value = parseNumber(words.value(3));
    if (words.size() != 4 || !address || !value)
        return usage("set STATION ADDRESS VALUE");
    Station* const target = findStation(m_line, words.at(1));
    if (!target)
        return noStation(words.at(1));
    target->write(*address, *value);
    return QString::fromLatin1("%1 %2 %3")
        .arg(hexText(*address), hexText(*value), QString::number(*value));
}

QString LineConsole::counters() const {
    using Row = std::pair<const char*, quint64 LineCounters::*>;
    static constexpr std::array<Row, 11> rows = {{
        {"reads", &LineCounters::reads},
        {"writes", &LineCounters::writes},
        {"refused", &LineCounters::refused},
        {"replies", &LineCounters::replies},
        {"faults", &LineCounters::faults},
        {"bad checksums", &LineCounters::bad_checksums},
        {"unreadable", &LineCounters::unreadable},
        {"other stations", &LineCounters::other_stations},
        {"noise bytes", &LineCounters::noise_bytes},
        {"bytes received", &LineCounters::bytes_received},
        {"bytes sent", &LineCounters::bytes_sent},
    }};
    const LineCounters values = m_line.counters();
    QStringList lines;
    for (const auto& [name, member] : rows)
        lines += QString::fromLatin1("%1 %2").arg(QLatin1String(name)).arg(values.*member);
    return lines.join(QLatin1Char('\n'));
}

QString LineConsole::quit() {
    m_quit = true;
    return QString::fromLatin1("bye");
}

} // namespace simulator
