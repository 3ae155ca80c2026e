#ifndef RUNTIME_DRIVERS_BYTEORDER_H
#define RUNTIME_DRIVERS_BYTEORDER_H

#include <QByteArray>
#include <QtGlobal>

/** Byte images of numbers. An image is little-endian unless a name says
 *  big-endian, whatever the machine. Any thread. */

/** Always true: the callers' fixed answer, not a question about the machine. */
bool isBigEndian();

/** Value of the first 4 bytes at most; shorter images give the shorter value. */
int QByteArrayToInt(const QByteArray& image);

/** Value of the first 2 bytes at most; 0 for an empty image. */
unsigned short QByteArrayToWord(const QByteArray& image);
short QByteArrayToShort(const QByteArray& image);

/** Images of 2, 2 and 4 bytes. */
QByteArray wordToByteArray(unsigned short word);
QByteArray shortToByteArray(short value);
QByteArray intToByteArray(int value);

/** Bit 0 of byte 0; false for an empty image. */
bool getBitData(const QByteArray& image);

/** Appends the high byte, then the low byte. */
void appendBigEndianUShort(QByteArray& array, unsigned short word);

/** Little-endian images of @p count big-endian numbers of 2 or 4 bytes at @p source. */
QByteArray fromBigEndianUShortArray(const void* source, int count);
QByteArray fromBigEndianULongArray(const void* source, int count);

/** Turns every group of 2 or 4 bytes round in place. Bytes after the last whole
 *  group stay. */
void toLittleEndianUShortArray(QByteArray& array);
void toLittleEndianULongArray(QByteArray& array);

/** A copy padded with zero bytes to whole groups of 2 or 4, each turned round. */
QByteArray toBigEndianUShortArray(const QByteArray& array);
QByteArray toBigEndianULongArray(const QByteArray& array);

/** The bytes in reverse order. */
QByteArray reverseArray(const QByteArray& array);

/** Rotates the @p n + @p m bytes at @p buffer left by @p n. */
void RotateArray(void* buffer, int n, int m);

#endif
