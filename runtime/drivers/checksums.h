#ifndef RUNTIME_DRIVERS_CHECKSUMS_H
#define RUNTIME_DRIVERS_CHECKSUMS_H

#include <QtGlobal>

/** Checksums of serial protocols. All are 0 for a length below 1. Any thread. */

/** Sum of the bytes modulo 256, modulo 65536, and their exclusive or. */
quint8 UInt8CheckSum(const void* data, int length);
quint16 UShortCheckSum(const void* data, int length);
quint8 XorUInt8CheckSum(const void* data, int length);

/** CRC-16/ARC: update_crc_16() from 0 over the bytes. */
quint16 CRC16Calculate(const void* data, int length);

/** The CRC after one more byte. Initial values and final inversions are the
 *  callers' business. The tables behind them are built at the first call, safely
 *  from several threads. */
quint16 update_crc_16(quint16 crc, quint8 byte);     // 0xA001, reflected: ARC, Modbus
quint16 update_crc_kermit(quint16 crc, quint8 byte); // 0x8408, reflected
quint16 update_crc_dnp(quint16 crc, quint8 byte);    // 0xA6BC, reflected
quint16 update_crc_ccitt(quint16 crc, quint8 byte);  // 0x1021, most significant bit first
quint32 update_crc_32(quint32 crc, quint8 byte);     // 0xEDB88320, reflected

/** SICK's CRC-16 (0x8005) also takes in the byte before; 0 before the first one. */
quint16 update_crc_sick(quint16 crc, quint8 byte, quint8 previous_byte);

#endif
