#ifndef RUNTIME_DRIVERS_DATAPACK_H
#define RUNTIME_DRIVERS_DATAPACK_H

#include <QByteArray>
#include <QtGlobal>

#include <cstdarg>

/** Byte images of argument lists, described by a format text; see PackFormat for
 *  its letters. A letter without a count takes an int or unsigned int, one with a
 *  count a pointer to the source bytes, x and X take nothing. Source numbers of
 *  counted fields are little-endian and need no alignment. Any thread. */

/** Packs into @p buffer, which must hold the whole image. Returns the bytes
 *  covered; 0 at an unknown letter without a count (deliberately, as for an empty
 *  format) and -1 at a bad counted field. Fields before an error are written. */
int DataPack(void* buffer, const char* format, ...);
int VDataPack(void* buffer, const char* format, va_list arguments);

/** Packs into a new array; empty for any error, also for a counted x or X. */
QByteArray ByteArrayPack(const char* format, ...);
QByteArray VByteArrayPack(const char* format, va_list arguments);

/** Reads @p buffer into the variables that the arguments point to: 8, 16 or 32
 *  bits, or the bytes of a counted field. Returns the bytes consumed, -1 for any
 *  error. Fields before an error are stored. */
int DataUnpack(const void* buffer, const char* format, ...);
int VDataUnpack(const void* buffer, const char* format, va_list arguments);

/** Where the fields' arguments come from, one after the other. */
class PackArguments {
public:
    virtual ~PackArguments() {}
    virtual quint32 nextValue() = 0;
    virtual void* nextPointer() = 0;
};

/** VDataPack() and VDataUnpack() for any source of arguments. */
int packFields(void* buffer, const char* format, PackArguments& arguments);
int unpackFields(const void* buffer, const char* format, PackArguments& arguments);

#endif
