#ifndef RUNTIME_DRIVERS_DMC50V3_DMC50_CPL_H
#define RUNTIME_DRIVERS_DMC50V3_DMC50_CPL_H

#include "runtime/drivers/addrarg.h"

#include <QtGlobal>

/** CPL frames as pure values: no port, no thread, no allocation. */

/** Most items of one request; the controller's limits. */
const int CPLMaxReadAddresses = 50;
const int CPLMaxWriteDWords = 50;
const int CPLMaxWritePairs = 25;

/** Hexadecimal digits of an address or a double word. */
const int CPLDWordDigits = 8;

/** Bytes of the driver's frame buffers: 417, the longest request it sends, and
 *  room to spare. */
const int CPLBufferSize = 420;

/** Shortest reply: STX, station, sub-address, device, end code, ETX, checksum,
 *  CR LF. */
const int CPLMinResponseLength = 13;

/** Packers: write one request into @p buf, which has room for @p size bytes,
 *  cutting it there as snprintf does (a NUL included), and return the length of
 *  the whole frame. A null list or a count outside 1 to the limit ends the
 *  program. @{ */

/** Read of a list of double words; 17 + 8n characters. */
int CPLPackRNCmd(char* buf, int size, quint8 station_id, quint8 subaddress,
                 const quint32* addresses, uint num_of_addresses);

/** Write of consecutive double words, 4 bytes each with the least significant
 *  first; 23 + 8n characters. */
int CPLPackWGCmd(char* buf, int size, quint8 station_id, quint8 subaddress, quint32 start_address,
                 const uchar* dwords, uint num_of_dwords);

/** Write of a list of pairs; 17 + 16n characters. */
int CPLPackWNCmd(char* buf, int size, quint8 station_id, quint8 subaddress,
                 const AddrArg* addr_args, int num_of_addr_args);

/** @} */

/** True when the bytes up to the last four and the two checksum digits that
 *  follow them sum to 0 modulo 256. False for fewer than five bytes. */
bool CPLValidateChecksum(const char* frame, int len);

#endif
