#ifndef RUNTIME_DRIVERS_ADDRESSTEXT_H
#define RUNTIME_DRIVERS_ADDRESSTEXT_H

#include <QByteArray>
#include <QString>
#include <QtGlobal>

/** Numbers in the texts that name devices, and bytes as text. Any thread. */

/** The leading run of letters and "_". */
QString ExtractPrefixSymbol(const QString& text);

/** The number behind a device prefix: everything before the first digit of
 *  @p base (8, 10 or 16) is skipped, so that a prefix letter that is itself a
 *  hexadecimal digit is read as part of the number. 0 when the rest is no
 *  number, -1 for another base. */
int ExtractPLCDeviceAddress(const QByteArray& text, int base);
int ExtractPLCDeviceAddress(const QString& text, int base);

/** The number in at most @p len hexadecimal characters, up to a NUL; "0x" may
 *  stand before them. 0 when there are none, or when one is no hexadecimal digit.
 *  Digits beyond the eighth push the first ones out. */
quint32 HexToUInt(const char* text, int len);

/** The host's number for a port: 1000 for COM1, 1001 for COM2 and so on, 2000 for
 *  texts that begin with "ETHERNET" in either case. A text without trailing
 *  digits, or of digits only, is fatal. */
int DevStrToHmiPort(const QString& dev_str);

/** "(0X1 0Xff ) : " and the bytes themselves as Latin-1, for log lines. */
QString dumpByteArray(const QByteArray& bytes);

#endif
