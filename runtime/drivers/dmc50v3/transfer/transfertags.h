#ifndef RUNTIME_DRIVERS_DMC50V3_TRANSFER_TRANSFERTAGS_H
#define RUNTIME_DRIVERS_DMC50V3_TRANSFER_TRANSFERTAGS_H

#include <QByteArray>
#include <QString>
#include <QtGlobal>

/** Data of the panel's transfer tags, without their meaning. Any thread. */
namespace TransferTags {

/** Whether @p address is that of @p tag: the panel's names are parts of longer
 *  addresses. */
bool isTag(const QString& address, const char* tag);

/** The number in @p data, little-endian by its size: 1 and 2 bytes are signed, 3
 *  bytes unsigned, of 4 or more the first four are taken. 0 without data. */
qint32 writtenValue(const QByteArray& data);

/** Puts @p flag as 0 or 1 into the first byte of @p data, if it has one. */
void storeFlag(bool flag, QByteArray& data);

/** Puts the low bytes of @p value into @p data, as many as it is long; what is
 *  beyond the fourth byte stays as it is. */
void storeValue(qint32 value, QByteArray& data);

} // namespace TransferTags

#endif
