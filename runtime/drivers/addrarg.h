#ifndef RUNTIME_DRIVERS_ADDRARG_H
#define RUNTIME_DRIVERS_ADDRARG_H

#include <QtGlobal>

/** One pair of a controller write. */
struct AddrArg {
    quint32 address; // double-word address
    quint32 value;
};

/** A default node of the project: its link and its station. */
struct LinkIdStationId {
    int link_id;
    quint8 station_id;
};

#endif
