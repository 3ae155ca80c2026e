#ifndef RUNTIME_DRIVERS_COUNTS_H
#define RUNTIME_DRIVERS_COUNTS_H

#include <QtGlobal>

/** How many larger units hold a number of smaller ones, rounded up. Sums are
 *  formed in 64 bits, so no pair of 32-bit arguments wraps. Any thread. */

/** @p count elements in units of @p per_unit. */
inline int numOfUnits(quint64 count, unsigned per_unit) {
    return int((count + per_unit - 1) / per_unit);
}

/** Units that hold bits @p offset to @p offset + @p count - 1, counted from bit 0. */
inline int NumOfBitsToNumOfBytes(quint32 offset, quint32 count) {
    return numOfUnits(quint64(offset) + count, 8);
}

inline int NumOfBitsToNumOfWords(quint32 offset, quint32 count) {
    return numOfUnits(quint64(offset) + count, 16);
}

inline int NumOfBitsToNumOfDWords(quint32 offset, quint32 count) {
    return numOfUnits(quint64(offset) + count, 32);
}

inline int NumOfBytesToNumOfWords(quint32 bytes) {
    return numOfUnits(bytes, 2);
}

inline int NumOfBytesToNumOfDWords(quint32 bytes) {
    return numOfUnits(bytes, 4);
}

inline int NumOfBytesToNumOfQuadWords(quint32 bytes) {
    return numOfUnits(bytes, 8);
}

#endif
