#ifndef RUNTIME_DRIVERS_BITS_H
#define RUNTIME_DRIVERS_BITS_H

#include <QByteArray>
#include <QtGlobal>

/** Bits of words, byte arrays and raw buffers. In arrays and buffers bit n is
 *  bit n mod 8 of byte n / 8, bit 0 the least significant. Any thread. */

/** @p x with bit @p n set or cleared. A bit that the type lacks changes nothing. */
unsigned short setBit(unsigned short x, quint32 n);
unsigned char setBit(unsigned char x, quint32 n);
unsigned int setBit(unsigned int x, quint32 n);
unsigned short clearBit(unsigned short x, quint32 n);
unsigned char clearBit(unsigned char x, quint32 n);
unsigned int clearBit(unsigned int x, quint32 n);

/** Bit @p n of @p x; false for a bit that the type lacks. */
bool getBit(unsigned short x, quint32 n);
bool getBit(unsigned char x, quint32 n);
bool getBit(unsigned int x, quint32 n);

/** Bit @p n; false beyond the end of the array. A buffer must hold the bit. */
bool getBit(const QByteArray& array, quint32 n);
bool getBit(const void* buffer, quint32 n);

/** Makes bit @p n equal to @p value. The array grows with zero bytes until it
 *  holds the bit; a buffer must hold it already. */
void setBit(QByteArray& array, quint32 n, bool value);
void setBit(void* buffer, quint32 n, bool value);

/** Copies bit i of @p src to bit @p offset + i of @p dst for every i < @p count.
 *  Arrays: missing source bits count as 0, and @p dst grows as in setBit(). */
void CopyBits(QByteArray& dst, const QByteArray& src, quint32 offset, quint32 count);
void CopyBits(void* dst, const void* src, quint32 offset, quint32 count);

/** One byte, 0 or 1, for each of @p count bits from bit @p first on. */
QByteArray ExpandBitsToBytes(const QByteArray& array, quint32 first, quint32 count);

/** Moves bit @p n to bit 0. Whole bytes rotate: the @p n / 8 low bytes that fall
 *  out come round to the end. The remaining @p n mod 8 bits shift, and zeros enter
 *  at the top of the last byte. */
void RightShiftNBits(QByteArray& array, quint32 n);

/** Resizes to the bytes that @p count bits take; new bytes are 0. */
void FitBitArray(QByteArray& array, quint32 count);

/** Clears the bits of byte @p count / 8 that lie above the first @p count bits. */
void clearUnnecessaryBits(QByteArray& array, quint32 count);

#endif
