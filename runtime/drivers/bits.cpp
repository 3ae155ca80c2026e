#include "runtime/drivers/bits.h"

#include "runtime/drivers/byteorder.h"
#include "runtime/drivers/counts.h"

namespace {

/** 0 for a bit that no 32-bit word has. */
quint32 mask(quint32 n) {
    return n < 32 ? quint32(1) << n : 0;
}

const uchar* bytesOf(const void* buffer) {
    return static_cast<const uchar*>(buffer);
}

} // namespace

unsigned short setBit(unsigned short x, quint32 n) {
    return static_cast<unsigned short>(x | mask(n));
}

unsigned char setBit(unsigned char x, quint32 n) {
    return static_cast<unsigned char>(x | mask(n));
}

unsigned int setBit(unsigned int x, quint32 n) {
    return x | mask(n);
}

unsigned short clearBit(unsigned short x, quint32 n) {
    return static_cast<unsigned short>(x & ~mask(n));
}

unsigned char clearBit(unsigned char x, quint32 n) {
    return static_cast<unsigned char>(x & ~mask(n));
}

unsigned int clearBit(unsigned int x, quint32 n) {
    return x & ~mask(n);
}

bool getBit(unsigned short x, quint32 n) {
    return (x & mask(n)) != 0;
}

bool getBit(unsigned char x, quint32 n) {
    return (x & mask(n)) != 0;
}

bool getBit(unsigned int x, quint32 n) {
    return (x & mask(n)) != 0;
}

bool getBit(const QByteArray& array, quint32 n) {
    return n / 8 < quint32(array.size()) && getBit(array.constData(), n);
}

bool getBit(const void* buffer, quint32 n) {
    return getBit(bytesOf(buffer)[n / 8], n % 8);
}

void setBit(QByteArray& array, quint32 n, bool value) {
    const int needed = int(n / 8) + 1;
    if (array.size() < needed)
        array = array.leftJustified(needed, '\0');
    setBit(array.data(), n, value);
}

void setBit(void* buffer, quint32 n, bool value) {
    uchar& byte = static_cast<uchar*>(buffer)[n / 8];
    byte = value ? setBit(byte, n % 8) : clearBit(byte, n % 8);
}

void CopyBits(QByteArray& dst, const QByteArray& src, quint32 offset, quint32 count) {
    for (quint32 i = 0; i < count; ++i)
        setBit(dst, offset + i, getBit(src, i));
}

void CopyBits(void* dst, const void* src, quint32 offset, quint32 count) {
    for (quint32 i = 0; i < count; ++i)
        setBit(dst, offset + i, getBit(src, i));
}

QByteArray ExpandBitsToBytes(const QByteArray& array, quint32 first, quint32 count) {
    QByteArray expanded(int(count), '\0');
    for (quint32 i = 0; i < count; ++i)
        expanded[i] = char(getBit(array, first + i));
    return expanded;
}

void RightShiftNBits(QByteArray& array, quint32 n) {
    if (array.isEmpty())
        return;
    const int size = array.size();
    const int whole_bytes = int(n / 8 % quint32(size));
    RotateArray(array.data(), whole_bytes, size - whole_bytes);

    uchar* bytes = reinterpret_cast<uchar*>(array.data());
    for (int i = 0; i < size; ++i) {
        const quint32 next = i + 1 < size ? bytes[i + 1] : 0;
        bytes[i] = uchar((bytes[i] | next << 8) >> n % 8);
    }
}

void FitBitArray(QByteArray& array, quint32 count) {
    array = array.leftJustified(NumOfBitsToNumOfBytes(0, count), '\0', true);
}

void clearUnnecessaryBits(QByteArray& array, quint32 count) {
    const quint32 last = count / 8;
    if (count % 8 != 0 && last < quint32(array.size()))
        array[int(last)] = char(uchar(array.at(int(last))) & ((1U << count % 8) - 1));
}
