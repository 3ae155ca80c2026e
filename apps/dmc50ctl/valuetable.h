#ifndef APPS_DMC50CTL_VALUETABLE_H
#define APPS_DMC50CTL_VALUETABLE_H

#include "host/line/stationhealth.h"
#include "host/session/linksession.h"
#include "host/session/tagstate.h"
#include "host/session/tagvalue.h"

#include <nlohmann/json_fwd.hpp>

/** What is known of a value that is watched. */
struct Watched {
    host::TagState state;
    host::StationHealth health; // of its station
    qint64 now = 0;             // ms of the ports' clock
};

/** One line of output. */
struct ValueRow {
    host::TagDefinition tag;
    host::TagResult result;
    qint64 age_ms = -1; // since the exchange that brought it; -1: unknown
    std::optional<Watched> watched = std::nullopt;
};

/** Rows in columns NAME, ADDRESS, STATION, VALUE, UNIT, with @p with_age AGE, and
 *  ERROR where there is one. A tag of plain addresses has its name only. */
QString valueTable(const QVector<ValueRow>& rows, host::ValueFormat format, bool with_age);

/** An array of {name, address, station, type, value, unit, age_ms, error}, and of
 *  what is watched {quality, time, sequence, station_health}, too. Values
 *  are numbers, or texts with --format hex or bits; a list for several elements;
 *  null with an error. */
nlohmann::ordered_json valueJson(const QVector<ValueRow>& rows, host::ValueFormat format);

/** Columns as wide as their widest text, two blanks between them. */
QString alignedColumns(const QVector<QStringList>& rows);

/** Writes text and a line end to the standard output, at once. */
void printLine(const QString& text);

/** Writes "dmc50ctl: text" to the standard error. */
void printError(const QString& text);

#endif
