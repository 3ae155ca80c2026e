#include "apps/dmc50ctl/stationtable.h"

#include "apps/dmc50ctl/valuetable.h"

#include <nlohmann/json.hpp>

using namespace host;

namespace {

QString decimal(double value, const char* unit) {
    return QString::fromLatin1("%1 %2").arg(value, 0, 'f', 1).arg(QLatin1String(unit));
}

double sinceSeconds(const StationHealth& health, qint64 now) {
    return double(now - health.since_ms) / 1000;
}

QString answerText(const StationHealth& health, qint64 usecs) {
    return health.answers == 0 ? QStringLiteral("-") : decimal(double(usecs) / 1000, "ms");
}

QStringList cells(const StationStatus& status, const QString& link, qint64 now) {
    const StationHealth& health = status.health;
    const bool is_known = health.state != StationHealth::State::Unknown;
    return {QString::number(status.station),
            link,
            QLatin1String(stateName(health.state)),
            is_known ? decimal(sinceSeconds(health, now), "s") : QStringLiteral("-"),
            answerText(health, health.mean_usecs),
            answerText(health, health.worst_usecs),
            QString::number(health.withheld)};
}

} // namespace

QString stationTable(const std::vector<StationStatus>& stations, const Project& project,
                     qint64 now) {
    const bool several = project.links.size() > 1;
    QVector<QStringList> rows = {
        {QStringLiteral("STATION"), several ? QStringLiteral("LINK") : QString(),
         QStringLiteral("STATE"), QStringLiteral("SINCE"), QStringLiteral("ANSWER"),
         QStringLiteral("WORST"), QStringLiteral("WITHHELD")}};
    for (const StationStatus& status : stations)
        rows.append(cells(status, several ? project.link(status.link_id)->name : QString(), now));
    return alignedColumns(rows);
}

nlohmann::ordered_json healthJson(const StationHealth& health, qint64 now) {
    nlohmann::ordered_json json = {{"state", stateName(health.state)}};
    if (health.state != StationHealth::State::Unknown)
        json["since_s"] = sinceSeconds(health, now);
    if (health.answers > 0) {
        json["answer_ms"] = double(health.mean_usecs) / 1000;
        json["worst_ms"] = double(health.worst_usecs) / 1000;
    }
    json["withheld"] = health.withheld;
    return json;
}
