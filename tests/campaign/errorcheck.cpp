#include "tests/campaign/errorcheck.h"

#include <algorithm>

namespace campaign {

namespace {

using Kind = LineFault::Kind;
using Kinds = std::set<Kind>;

// A fault that leaves whole frames, or none, is not behind what these texts tell.
// Silence may stand for any but one: what strikes a question of the port's own, which
// the driver does not know of, keeps its request from going out.
const Kinds NotSilent = {Kind::Forged};
const Kinds NotShort = {Kind::Silence, Kind::Dead,   Kind::PowerLoss,   Kind::BadChecksum,
                        Kind::EndCode, Kind::Forged, Kind::WrongStation};
const Kinds NotSummed = {Kind::Silence,      Kind::Dead,         Kind::PowerLoss, Kind::EndCode,
                         Kind::WrongStation, Kind::OtherStation, Kind::Forged};
const Kinds NotForeign = {Kind::Silence,     Kind::Dead,    Kind::PowerLoss,
                          Kind::BadChecksum, Kind::EndCode, Kind::Forged};
const Kinds NotRefused = {Kind::Silence,     Kind::Dead,         Kind::PowerLoss,
                          Kind::BadChecksum, Kind::WrongStation, Kind::OtherStation,
                          Kind::Forged};

const Kinds* excludedBy(const QString& text) {
    if (text.endsWith(QLatin1String("DMC50 no response")))
        return &NotSilent;
    if (text.endsWith(QLatin1String("packet loss")))
        return &NotShort;
    if (text.endsWith(QLatin1String("checksum error")))
        return &NotSummed;
    if (text.endsWith(QLatin1String("invalid station id from DMC50")))
        return &NotForeign;
    return text.contains(QLatin1String("end code ")) ? &NotRefused : nullptr;
}

bool isOfTheLine(Kind kind) {
    return kind == Kind::Close || kind == Kind::Unplugged;
}

bool namesOtherEndCode(const LineFault& fault, const QString& text) {
    const QString digits =
        QString::fromLatin1("%1").arg(fault.value, 2, 16, QLatin1Char('0')).toUpper();
    return fault.kind == Kind::EndCode && text.contains(QLatin1String("end code ")) &&
           !text.endsWith(digits + QLatin1Char('H'));
}

} // namespace

QString ErrorCheck::failed(int station, qint64 sent, const QString& text) {
    m_text = text;
    // A station that a fault has kept from answering may then be held off for a while.
    const bool held_off = m_afflicted.count(station) > 0 && excludedBy(text) == &NotSilent;
    if (held_off || isExplained(station, sent, text)) {
        m_afflicted.insert(station);
        return QString();
    }
    return QString::fromLatin1("\"%1\" names no fault that was made").arg(text);
}

/** What struck the station since it last answered well may still show; what struck
 *  another may leave bytes on the line for a while. */
bool ErrorCheck::isExplained(int station, qint64 sent, const QString& text) const {
    const Kinds* const excluded = excludedBy(text);
    if (!excluded)
        return false;
    const auto good = m_last_good.find(station);
    const qint64 since = good == m_last_good.end() ? 0 : good->second;
    const auto& recent = m_faults.recent();
    return std::any_of(recent.rbegin(), recent.rend(), [&](const FaultLog::Struck& struck) {
        const bool own = struck.station == station || isOfTheLine(struck.fault.kind);
        return excluded->count(struck.fault.kind) == 0 && !namesOtherEndCode(struck.fault, text) &&
               ((own && struck.usecs >= since) || struck.ends >= sent);
    });
}

} // namespace campaign
