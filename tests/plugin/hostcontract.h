#ifndef TESTS_PLUGIN_HOSTCONTRACT_H
#define TESTS_PLUGIN_HOSTCONTRACT_H

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QPair>
#include <QString>
#include <QVariant>

/** The host's side of the contract, written down a second time and without the
 *  plug-in's headers: a slip in those must not hide itself. */
namespace host {

struct DeviceRecord {
    int type;
    QString string;
    int baudrate, databits, stopbits, parity, seventh;
    QString eighth;
    int link_id, ip_index;
    QList<QPair<QString, quint16>> endpoints;
};

struct DriverRecord {
    int timeout, retry, stationid, delay;
    QString text;
    bool flag;
};

// The record has virtual operations but is never deleted through a base.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
struct Command {
    Command(const char* tag, int data_type, int data_count)
        : first(0), type(data_type), count(data_count), address(QString::fromLatin1(tag)) {}

    virtual int getDataSize() const { return size; }
    virtual QString stringKey() const { return address; }

    qint32 first;
    int type;
    int count;
    QString address;
    int size = 0; // beyond the record: what this host answers
};
#pragma GCC diagnostic pop

inline Command command(const char* tag, int data_type, int data_count, int size) {
    Command made(tag, data_type, data_count);
    made.size = size;
    return made;
}

struct Port {
    virtual ~Port() = default;               // 0 and 1
    virtual int slot2() = 0;                 //
    virtual int slot3(char*, int) = 0;       // read
    virtual int slot4(const char*, int) = 0; // write
    virtual int slot5() = 0;
    virtual int slot6() = 0;
    virtual int slot7() = 0;
    virtual const DeviceRecord* slot8() = 0; // settings
    virtual int slot9() = 0;
    virtual int slot10() = 0;
    virtual int slot11() = 0;
    virtual void slot12(int, QVariant) = 0; // control
    virtual int slot13() = 0;
    virtual int slot14() = 0;
    virtual int slot15() = 0;
    virtual int slot16() = 0;
    virtual int slot17() = 0;
    virtual int slot18() = 0;      // response timeout, ms
    virtual unsigned slot19() = 0; // retries
    virtual int slot20() = 0;      // station
    virtual int slot21() = 0;
    virtual unsigned slot22() = 0; // pause between frames, ms
};

struct Driver {
    virtual ~Driver() = default;
    virtual int totalSize() = 0;
    virtual bool write(Port*, const Command&, const QByteArray&) = 0;
    virtual QByteArray read(Port*, const Command&) = 0;
    virtual bool initialize(Port*) = 0;
    virtual bool validation(const QString&) = 0;
    virtual QString name() = 0;
    virtual QString vender() = 0;
    virtual QString version() = 0;
    virtual DeviceRecord* defaultDevice() = 0;
    virtual DriverRecord* defaultDriver() = 0;
    virtual QString defaultText() = 0;
    virtual int flags() = 0;
    virtual void setDebugMode(bool) = 0;
    virtual int blockSize() = 0;
    virtual int bitBlockSize() = 0;
    virtual bool hasError() = 0;
    virtual QString lastError() = 0;
    virtual QObject* object() = 0;
    virtual bool supportsSessions() = 0;
    virtual void setSession(QList<Command>) = 0;
    virtual void clearSession() = 0;
    virtual bool deviceChanged(const DeviceRecord*) = 0;
    virtual bool isConnected(Port*) = 0;
};

} // namespace host

#endif
