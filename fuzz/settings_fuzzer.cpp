// Stored settings from a damaged project: reading them must neither crash nor
// take memory beyond what the stream can hold, and what was read must survive
// being written and read again.
#include "runtime/interfaces/devicesetting.h"
#include "runtime/interfaces/driversetting.h"

#include <QByteArray>
#include <QDataStream>

#include <cstdint>
#include <cstdlib>

namespace {

const int SmallestStoredEndpoint = 4 + 2; // length of an empty address, port

void require(bool condition) {
    if (!condition)
        std::abort();
}

/** How the input says that it is to be read. */
struct Choice {
    QDataStream::ByteOrder order;
    bool had_endpoints; // in the record that is read into
};

DeviceSetting deviceRecord(bool with_endpoints) {
    DeviceSetting setting(DEVICE_RS485, QString::fromLatin1("COM2"), 38400, 8, 0, 2);
    for (int i = 0; with_endpoints && i < 3; ++i)
        setting.endpoints.append(qMakePair(QString::fromLatin1("10.0.0.1"), quint16(502)));
    return setting;
}

template <typename Setting>
QByteArray stored(const Setting& setting) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << setting;
    return bytes;
}

template <typename Setting>
QDataStream::Status read(const QByteArray& bytes, QDataStream::ByteOrder order, Setting& setting) {
    QDataStream stream(bytes);
    stream.setByteOrder(order);
    stream >> setting;
    return stream.status();
}

void checkDevice(const QByteArray& bytes, const Choice& choice) {
    DeviceSetting setting = deviceRecord(choice.had_endpoints);
    const QDataStream::Status status = read(bytes, choice.order, setting);
    require(setting.endpoints.size() <= bytes.size() / SmallestStoredEndpoint);
    require(setting.currentIndex >= 0 && setting.currentIndex < 3);
    setting.socketIP();
    setting.port();
    if (status != QDataStream::Ok)
        return;

    DeviceSetting again = deviceRecord(choice.had_endpoints);
    require(read(stored(setting), QDataStream::BigEndian, again) == QDataStream::Ok);
    require(stored(again) == stored(setting));
}

void checkDriver(const QByteArray& bytes, const Choice& choice) {
    DriverSetting setting(1000, 3, 1, 30, QString(), 0, QString::fromLatin1("mine"), true);
    read(bytes, choice.order, setting);
    require(setting.text == QLatin1String("mine") && setting.flag);

    DriverSetting again(0, 0, 0, 0);
    require(read(stored(setting), QDataStream::BigEndian, again) == QDataStream::Ok);
    require(stored(again) == stored(setting));
}

} // namespace

/** The first byte chooses how the rest is read. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0)
        return 0;
    const Choice choice = {data[0] & 1 ? QDataStream::LittleEndian : QDataStream::BigEndian,
                           (data[0] & 2) != 0};
    const QByteArray bytes(reinterpret_cast<const char*>(data + 1), int(size - 1));
    checkDevice(bytes, choice);
    checkDriver(bytes, choice);
    return 0;
}
