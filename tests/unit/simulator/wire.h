#ifndef TESTS_UNIT_SIMULATOR_WIRE_H
#define TESTS_UNIT_SIMULATOR_WIRE_H

#include "trace/escapedtext.h"

#include <QByteArray>
#include <QString>

#include <string>

/** The bytes of an escaped text: <02>0100X... */
inline QByteArray wire(const char* escaped) {
    return trace::unescapedBytes(escaped).value();
}

/** Bytes as a text that a failed test shows readably. */
inline std::string shown(const QByteArray& bytes) {
    return trace::escapedText(bytes).toStdString();
}

inline std::string shown(const QString& text) {
    return text.toStdString();
}

/** @p text between STX and ETX, with the checksum and CR LF. */
inline QByteArray framed(const QByteArray& text) {
    QByteArray frame = '\x02' + text + '\x03';
    int sum = 0;
    for (char byte : frame)
        sum -= byte;
    return frame + QByteArray(1, char(sum)).toHex().toUpper() + "\r\n";
}

/** An RN request for @p count addresses from @p first on. */
inline QByteArray readRequest(int station, quint32 first, int count) {
    QString text = QString::asprintf("%02X00XRN00LL", unsigned(station));
    for (int i = 0; i < count; ++i)
        text += QString::asprintf("%08X", first + unsigned(i));
    return framed(text.toLatin1());
}

#endif
