#ifndef APPS_DMC50CTL_STATIONTABLE_H
#define APPS_DMC50CTL_STATIONTABLE_H

#include "host/session/valuehub.h"

#include <nlohmann/json_fwd.hpp>

/** Rows in columns STATION, LINK (where there are several), STATE, SINCE, ANSWER,
 *  WORST and WITHHELD; @p now: ms of the ports' clock. */
QString stationTable(const std::vector<host::StationStatus>& stations, const host::Project& project,
                     qint64 now);

/** {state, since_s, answer_ms, worst_ms, withheld}; times that are not known are
 *  left out. */
nlohmann::ordered_json healthJson(const host::StationHealth& health, qint64 now);

#endif
