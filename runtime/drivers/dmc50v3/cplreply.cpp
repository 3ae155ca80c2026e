#include "runtime/drivers/dmc50v3/cplreply.h"

#include "runtime/drivers/dmc50v3/dmc50_cpl.h"
#include "runtime/drivers/tools.h"

#include <cstdio>

namespace {

const int StationOffset = 1;
const int EndCodeOffset = 6;
const int DataOffset = 8;

/** How service people know the failures of one kind of request. */
struct Wording {
    const char* prefix; // of station and first address
    const char* short_frame;
};

const Wording ReadWording = {"read station id#%u start address %08X:", "read: packet loss"};
const Wording WriteWording = {"write station id#%u address %08X", "packet loss"}; // no separator

QString endCodeText(quint8 end_code) {
    char text[16];
    std::snprintf(text, sizeof text, "end code %02XH", unsigned(end_code));
    return QString::fromLatin1(text);
}

/** What is wrong with @p reply; empty when nothing is. */
QString fault(const CPLReply& reply, quint8 station_id, const Wording& wording) {
    if (reply.length < 1)
        return QString::fromLatin1("DMC50 no response");
    if (reply.length < CPLMinResponseLength)
        return QString::fromLatin1(wording.short_frame);
    if (!CPLValidateChecksum(reply.bytes, reply.length))
        return QString::fromLatin1("checksum error");
    if (getStationIdFromRsp(reply) != station_id)
        return QString::fromLatin1("invalid station id from DMC50");
    const quint8 end_code = getEndCodeFromRsp(reply);
    return end_code == 0 ? QString() : endCodeText(end_code);
}

bool check(const CPLReply& reply, quint8 station_id, quint32 address, const Wording& wording,
           QString& error) {
    const QString text = fault(reply, station_id, wording);
    if (text.isEmpty())
        return true;
    char prefix[64];
    std::snprintf(prefix, sizeof prefix, wording.prefix, unsigned(station_id), unsigned(address));
    error = QString::fromLatin1(prefix) + text;
    return false;
}

} // namespace

quint8 getStationIdFromRsp(const CPLReply& reply) {
    return quint8(HexToUInt(reply.bytes + StationOffset, 2));
}

quint8 getEndCodeFromRsp(const CPLReply& reply) {
    return quint8(HexToUInt(reply.bytes + EndCodeOffset, 2));
}

quint32 getDWordFromRsp(const CPLReply& reply, int i) {
    return HexToUInt(reply.bytes + DataOffset + CPLDWordDigits * i, CPLDWordDigits);
}

bool checkReadRsp(const CPLReply& reply, quint8 station_id, quint32 address, QString& error) {
    return check(reply, station_id, address, ReadWording, error);
}

bool checkWriteRsp(const CPLReply& reply, quint8 station_id, quint32 address, QString& error) {
    return check(reply, station_id, address, WriteWording, error);
}
