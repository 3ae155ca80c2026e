#ifndef RUNTIME_INTERFACES_DEVICESETTING_H
#define RUNTIME_INTERFACES_DEVICESETTING_H

#include <QList>
#include <QPair>
#include <QString>

class QDataStream;

/** Port kinds, as flags that a driver combines to say what it supports. 0x40 is
 *  the kind of the driver's default port; the host fixes the numbers. */
enum device_type : int { DEVICE_RS232 = 0x10, DEVICE_RS422 = 0x20, DEVICE_RS485 = 0x40 };

/** The port of a link. The fields, their order and the stream form are the
 *  host's and are stored with projects. A plain record. */
struct DeviceSetting {
    /** Of stopbits and parity. The driver's default port fixes OneStopBit and
     *  EvenParity; the others are our host's choice. @{ */
    enum StopBitsCode { OneStopBit = 0, TwoStopBits = 1 };
    enum ParityCode { NoParity = 0, OddParity = 1, EvenParity = 2 };
    /** @} */

    DeviceSetting(device_type type, const QString& name, int baudrate, int databits, int stopbits,
                  int parity);
    DeviceSetting(device_type type, const QString& name, int baudrate, int databits, int stopbits,
                  int parity, int number, const QString& text);

    /** Endpoint @p i, or the current one for -1; empty or 0 where there is none. */
    QString socketIP(int i = -1) const;
    quint16 port(int i = -1) const;

    /** Change endpoint @p i, or the current one for -1. An endpoint that does
     *  not exist is not made. */
    void setSocketIP(const QString& address, int i = -1);
    void setPort(quint16 port, int i = -1);

    /** Ignored unless 0 <= i < number of endpoints. */
    void setCurrentIPIndex(int i);

    /** One line of debug output. */
    void dump() const;

    device_type type;
    QString string; // port name, such as "COM2"
    int baudrate;
    int databits;
    int stopbits;     // a StopBitsCode; the host may know others
    int parity;       // a ParityCode; the host may know others
    int number;       // streamed; the host's
    QString text;     // not streamed; the host's
    int linkID;       // -1: none
    int currentIndex; // into endpoints
    QList<QPair<QString, quint16>> endpoints;
};

/** Everything but text. Reading checks the stored index against the endpoints
 *  that the record held before, since stored projects depend on it. */
QDataStream& operator<<(QDataStream& stream, const DeviceSetting& setting);
QDataStream& operator>>(QDataStream& stream, DeviceSetting& setting);

#endif
