#ifndef RUNTIME_DRIVERS_DMC50V3_VALIDADDRESSES_H
#define RUNTIME_DRIVERS_DMC50V3_VALIDADDRESSES_H

#include "runtime/drivers/polling/addressvector.h"

#include <QString>
#include <QStringList>

#include <set>

/** What the project's tags say about the controllers of one link. Only the
 *  addresses in here may go into a request. */
struct ValidAddresses {
    AddressVectorMap stations;     // ascending once sort() has run; duplicates stay
    std::set<quint8> low_latency;  // stations marked "LOWLATENCY"
    QStringList program_addresses; // texts of the NA forms, in row order

    /** Takes one tag address as the project's database has it. A malformed text
     *  is a broken project and ends the program. */
    void addTag(const QString& text, quint8 default_station);

    /** Call once after the last tag. */
    void sort();
};

#endif
