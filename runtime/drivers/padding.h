#ifndef RUNTIME_DRIVERS_PADDING_H
#define RUNTIME_DRIVERS_PADDING_H

#include <QByteArray>

class CommunicatorCommand;

/** Fitting a command's data to the controller's units. Any thread. */

/** Bytes of the command's data. Unlike the command's own getDataSize(), 0 for no
 *  bits at all, whole bytes for a bit block, and 0 for an unknown data type. */
int GetSafeDataLen(const CommunicatorCommand& command);

/** @p data cut to, or padded with zero bytes up to, GetSafeDataLen(). */
QByteArray ToSafeData(const CommunicatorCommand& command, const QByteArray& data);

/** @p data padded with zero bytes to a multiple of 2 or 4 bytes. */
QByteArray To16bitsData(const QByteArray& data);
QByteArray To32bitsData(const QByteArray& data);

/** Pads 1 to 3 bytes beyond a multiple of 8 to 4 bytes beyond it, and nothing
 *  else: 5 to 7 bytes beyond stay as they are. Callers depend on that. */
QByteArray To64bitsData(const QByteArray& data);

#endif
