#include "runtime/drivers/checksums.h"

#include <functional>
#include <numeric>

namespace {

const quint8* beginOf(const void* data) {
    return static_cast<const quint8*>(data);
}

const quint8* endOf(const void* data, int length) {
    return beginOf(data) + qMax(0, length);
}

/** CRCs of the 256 single bytes for a reflected polynomial. */
template <typename Crc, Crc polynomial>
struct ReflectedTable {
    ReflectedTable() : entry() {
        for (quint32 byte = 0; byte < 256; ++byte) {
            Crc crc = Crc(byte);
            for (int bit = 0; bit < 8; ++bit)
                crc = Crc(crc & 1 ? crc >> 1 ^ polynomial : crc >> 1);
            entry[byte] = crc;
        }
    }

    Crc entry[256];
};

/** The same for a polynomial of 16 bits that works from the top bit down. */
template <quint16 polynomial>
struct ForwardTable {
    ForwardTable() : entry() {
        for (quint32 byte = 0; byte < 256; ++byte) {
            quint16 crc = quint16(byte << 8);
            for (int bit = 0; bit < 8; ++bit)
                crc = quint16(crc & 0x8000 ? crc << 1 ^ polynomial : crc << 1);
            entry[byte] = crc;
        }
    }

    quint16 entry[256];
};

template <typename Crc, Crc polynomial>
Crc updateReflected(Crc crc, quint8 byte) {
    static const ReflectedTable<Crc, polynomial> table;
    return Crc(crc >> 8 ^ table.entry[(crc ^ byte) & 0xFF]);
}

} // namespace

quint8 UInt8CheckSum(const void* data, int length) {
    return quint8(std::accumulate(beginOf(data), endOf(data, length), quint32(0)));
}

quint16 UShortCheckSum(const void* data, int length) {
    return quint16(std::accumulate(beginOf(data), endOf(data, length), quint32(0)));
}

quint8 XorUInt8CheckSum(const void* data, int length) {
    return std::accumulate(beginOf(data), endOf(data, length), quint8(0), std::bit_xor<quint8>());
}

quint16 CRC16Calculate(const void* data, int length) {
    return std::accumulate(beginOf(data), endOf(data, length), quint16(0), update_crc_16);
}

quint16 update_crc_16(quint16 crc, quint8 byte) {
    return updateReflected<quint16, 0xA001>(crc, byte);
}

quint16 update_crc_kermit(quint16 crc, quint8 byte) {
    return updateReflected<quint16, 0x8408>(crc, byte);
}

quint16 update_crc_dnp(quint16 crc, quint8 byte) {
    return updateReflected<quint16, 0xA6BC>(crc, byte);
}

quint16 update_crc_ccitt(quint16 crc, quint8 byte) {
    static const ForwardTable<0x1021> table;
    return quint16(crc << 8 ^ table.entry[crc >> 8 ^ byte]);
}

quint32 update_crc_32(quint32 crc, quint8 byte) {
    return updateReflected<quint32, 0xEDB88320>(crc, byte);
}

quint16 update_crc_sick(quint16 crc, quint8 byte, quint8 previous_byte) {
    const quint16 shifted = quint16(crc & 0x8000 ? crc << 1 ^ 0x8005 : crc << 1);
    return quint16(shifted ^ (previous_byte << 8 | byte));
}
