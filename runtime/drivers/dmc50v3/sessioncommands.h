#ifndef RUNTIME_DRIVERS_DMC50V3_SESSIONCOMMANDS_H
#define RUNTIME_DRIVERS_DMC50V3_SESSIONCOMMANDS_H

#include "runtime/drivers/polling/sessionaddresses.h"

#include <QList>
#include <QString>

class CommunicatorCommand;

/** What @p commands name and @p valid_addresses holds. The driver's special tags
 *  are skipped. A malformed address, or a station that the project does not know,
 *  ends the program. Any thread. */
SessionAddresses::Stations addressesOfSession(const QList<CommunicatorCommand>& commands,
                                              const AddressVectorMap& valid_addresses,
                                              quint8 default_station_id);

/** The address and station of a tag; without a station prefix it is
 *  @p default_station_id. A text in no form ends the program. */
void parseSessionAddress(const QString& text, quint8 default_station_id, quint32& address,
                         quint8& station_id);

#endif
