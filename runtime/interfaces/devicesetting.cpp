#include "runtime/interfaces/devicesetting.h"

#include <QDataStream>
#include <QDebug>

DeviceSetting::DeviceSetting(device_type kind, const QString& name, int baud, int data_bits,
                             int stop_bits, int parity_code)
    : DeviceSetting(kind, name, baud, data_bits, stop_bits, parity_code, 0, QString()) {}

DeviceSetting::DeviceSetting(device_type kind, const QString& name, int baud, int data_bits,
                             int stop_bits, int parity_code, int number_value,
                             const QString& text_value)
    : type(kind)
    , string(name)
    , baudrate(baud)
    , databits(data_bits)
    , stopbits(stop_bits)
    , parity(parity_code)
    , number(number_value)
    , text(text_value)
    , linkID(-1)
    , currentIndex(0) {}

QString DeviceSetting::socketIP(int i) const {
    return endpoints.value(i == -1 ? currentIndex : i).first;
}

quint16 DeviceSetting::port(int i) const {
    return endpoints.value(i == -1 ? currentIndex : i).second;
}

void DeviceSetting::setSocketIP(const QString& address, int i) {
    const int index = i == -1 ? currentIndex : i;
    if (index >= 0 && index < endpoints.size())
        endpoints[index].first = address;
}

void DeviceSetting::setPort(quint16 port_number, int i) {
    const int index = i == -1 ? currentIndex : i;
    if (index >= 0 && index < endpoints.size())
        endpoints[index].second = port_number;
}

void DeviceSetting::setCurrentIPIndex(int i) {
    if (i >= 0 && i < endpoints.size())
        currentIndex = i;
}

void DeviceSetting::dump() const {
    qDebug() << "type:" << int(type) << "string:" << string << "baudrate:" << baudrate
             << "databits:" << databits << "stopbits:" << stopbits << "parity:" << parity
             << "linkID:" << linkID << "current ip:" << socketIP() << "current port:" << port();
}

QDataStream& operator<<(QDataStream& stream, const DeviceSetting& setting) {
    stream << qint32(setting.type) << setting.string << qint32(setting.baudrate)
           << qint32(setting.databits) << qint32(setting.stopbits) << qint32(setting.parity)
           << qint32(setting.number) << qint32(setting.linkID) << qint32(setting.currentIndex)
           << qint32(setting.endpoints.size());
    for (int i = 0; i < setting.endpoints.size(); ++i)
        stream << setting.endpoints.at(i).first << setting.endpoints.at(i).second;
    return stream;
}

namespace {

qint32 readInt(QDataStream& stream) {
    qint32 value = 0;
    stream >> value;
    return value;
}

} // namespace

QDataStream& operator>>(QDataStream& stream, DeviceSetting& setting) {
    setting.type = device_type(readInt(stream));
    stream >> setting.string;
    setting.baudrate = readInt(stream);
    setting.databits = readInt(stream);
    setting.stopbits = readInt(stream);
    setting.parity = readInt(stream);
    setting.number = readInt(stream);
    setting.linkID = readInt(stream);
    setting.setCurrentIPIndex(readInt(stream));

    const qint32 count = readInt(stream);
    setting.endpoints.clear();
    // A broken stream reads as zeros for ever: its status ends the loop, not a
    // count that may be two thousand million.
    for (qint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        QPair<QString, quint16> endpoint(QString(), 0);
        stream >> endpoint.first >> endpoint.second;
        if (stream.status() == QDataStream::Ok)
            setting.endpoints.append(endpoint);
    }
    return stream;
}
