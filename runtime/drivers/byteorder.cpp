#include "runtime/drivers/byteorder.h"

#include "runtime/drivers/bits.h"
#include "runtime/drivers/padding.h"

#include <QtEndian>

#include <algorithm>

namespace {

quint32 littleEndianValue(const QByteArray& image, int max_bytes) {
    quint32 value = 0;
    for (int i = qMin(image.size(), max_bytes) - 1; i >= 0; --i)
        value = value << 8 | uchar(image.at(i));
    return value;
}

template <typename Number>
QByteArray littleEndianImage(Number number) {
    QByteArray image(int(sizeof(Number)), '\0');
    qToLittleEndian<Number>(number, reinterpret_cast<uchar*>(image.data()));
    return image;
}

void reverseGroups(QByteArray& array, int group) {
    char* bytes = array.data();
    for (int start = 0; start + group <= array.size(); start += group)
        std::reverse(bytes + start, bytes + start + group);
}

} // namespace

bool isBigEndian() {
    return true;
}

int QByteArrayToInt(const QByteArray& image) {
    return int(littleEndianValue(image, 4));
}

unsigned short QByteArrayToWord(const QByteArray& image) {
    return static_cast<unsigned short>(littleEndianValue(image, 2));
}

short QByteArrayToShort(const QByteArray& image) {
    return short(littleEndianValue(image, 2));
}

QByteArray wordToByteArray(unsigned short word) {
    return littleEndianImage<quint16>(word);
}

QByteArray shortToByteArray(short value) {
    return littleEndianImage<quint16>(quint16(value));
}

QByteArray intToByteArray(int value) {
    return littleEndianImage<quint32>(quint32(value));
}

bool getBitData(const QByteArray& image) {
    return getBit(image, 0);
}

void appendBigEndianUShort(QByteArray& array, unsigned short word) {
    array.append(char(word >> 8));
    array.append(char(word));
}

QByteArray fromBigEndianUShortArray(const void* source, int count) {
    QByteArray array(static_cast<const char*>(source), 2 * count);
    toLittleEndianUShortArray(array);
    return array;
}

QByteArray fromBigEndianULongArray(const void* source, int count) {
    QByteArray array(static_cast<const char*>(source), 4 * count);
    toLittleEndianULongArray(array);
    return array;
}

void toLittleEndianUShortArray(QByteArray& array) {
    reverseGroups(array, 2);
}

void toLittleEndianULongArray(QByteArray& array) {
    reverseGroups(array, 4);
}

QByteArray toBigEndianUShortArray(const QByteArray& array) {
    QByteArray words = To16bitsData(array);
    reverseGroups(words, 2);
    return words;
}

QByteArray toBigEndianULongArray(const QByteArray& array) {
    QByteArray double_words = To32bitsData(array);
    reverseGroups(double_words, 4);
    return double_words;
}

QByteArray reverseArray(const QByteArray& array) {
    QByteArray reversed = array;
    reverseGroups(reversed, qMax(1, reversed.size()));
    return reversed;
}

void RotateArray(void* buffer, int n, int m) {
    char* bytes = static_cast<char*>(buffer);
    std::rotate(bytes, bytes + n, bytes + n + m);
}
