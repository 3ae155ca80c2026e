#include "tests/campaign/linefault.h"

#include <QRegularExpression>

#include <array>

namespace campaign {

namespace {

constexpr std::array<const char*, FaultKinds> KindNames = {
    "silence",  "late",       "split",        "dribble",       "checksum",  "wrong-station",
    "end-code", "truncate",   "noise-before", "noise-after",   "echo",      "close",
    "deleted",  "inserted",   "glued",        "other-station", "completed", "forged",
    "dead",     "power-loss", "unplugged"};

std::optional<LineFault::Kind> kindOf(const QString& name) {
    for (std::size_t i = 0; i < KindNames.size(); ++i) {
        if (name == QLatin1String(KindNames[i]))
            return LineFault::Kind(i);
    }
    return std::nullopt;
}

} // namespace

QString kindName(LineFault::Kind kind) {
    return QString::fromLatin1(KindNames[std::size_t(kind)]);
}

QString faultLine(const LineFault& fault) {
    return QString::fromLatin1("%1 %2 ms=%3 at=%4 value=%5")
        .arg(fault.request)
        .arg(kindName(fault.kind))
        .arg(fault.ms)
        .arg(fault.at)
        .arg(fault.value);
}

std::optional<LineFault> parseFaultLine(const QString& line) {
    static const QRegularExpression pattern(
        QStringLiteral("^(\\d+) ([a-z-]+) ms=(\\d+) at=(\\d+) value=(\\d+)$"));
    const QRegularExpressionMatch match = pattern.match(line);
    const std::optional<LineFault::Kind> kind = kindOf(match.captured(2));
    if (!match.hasMatch() || !kind)
        return std::nullopt;
    return LineFault{match.captured(1).toULongLong(), *kind, match.captured(3).toInt(),
                     match.captured(4).toInt(), match.captured(5).toInt()};
}

} // namespace campaign
