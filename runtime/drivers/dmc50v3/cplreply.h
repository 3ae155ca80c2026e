#ifndef RUNTIME_DRIVERS_DMC50V3_CPLREPLY_H
#define RUNTIME_DRIVERS_DMC50V3_CPLREPLY_H

#include <QString>

/** A controller's reply where it was received; a value that owns nothing. Behind
 *  its @e length bytes there are NULs up to CPLBufferSize, so that a field which
 *  it is too short for reads as 0. */
struct CPLReply {
    const char* bytes;
    int length;
};

/** Fields of a reply; nothing is checked. */
quint8 getStationIdFromRsp(const CPLReply& reply);
quint8 getEndCodeFromRsp(const CPLReply& reply);

/** Double word @p i, from 0 on, of the reply to a read. */
quint32 getDWordFromRsp(const CPLReply& reply, int i);

/** Judge @p reply as the answer to a request to @p station_id whose first address
 *  was @p address. False, with the text for service people in @p error, unless it
 *  is a whole frame of that station with end code 0. How many values it carries
 *  is not looked at. @{ */
bool checkReadRsp(const CPLReply& reply, quint8 station_id, quint32 address, QString& error);
bool checkWriteRsp(const CPLReply& reply, quint8 station_id, quint32 address, QString& error);
/** @} */

#endif
