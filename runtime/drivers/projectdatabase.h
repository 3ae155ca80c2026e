#ifndef RUNTIME_DRIVERS_PROJECTDATABASE_H
#define RUNTIME_DRIVERS_PROJECTDATABASE_H

#include "runtime/drivers/addrarg.h"

#include <QDir>
#include <QList>
#include <QString>
#include <QtGlobal>

/** Look-ups in the database that the project compiler writes. The path functions
 *  may be called from any thread; a look-up only from the thread that made the
 *  connection it names. */

extern const QString COMPILE_PATH;  // "compile"
extern const QString DATABASE_PATH; // "database"

/** The application's directory, or "compile" in it where that exists. */
QDir GetCompilePath();

/** Absolute path of the database file, which need not exist. Normally
 *  <application directory>/compile/database/database. */
QString GetDatabaseName();

/** Link and default station of the port @p hmi_port, through the Qt connection
 *  @p connection_name (opened if it was closed). False, with both results left
 *  alone, when the project has none or the query fails. */
bool GetLinkIdAndDefaultStationId(const QString& connection_name, int hmi_port, int& link_id,
                                  quint8& station_id);

/** Appends links and default stations behind one socket endpoint of the port.
 *  True if @p pairs holds any pair then. */
bool GetLinkIdAndDefaultStationId(const QString& connection_name, int hmi_port, const QString& ip,
                                  int port, QList<LinkIdStationId>& pairs);

/** Appends the default stations of one link. True if @p pairs holds any pair then. */
bool GetLinkIdAndDefaultStationId(const QString& connection_name, int link_id,
                                  QList<LinkIdStationId>& pairs);

#endif
