#include "tests/unit/line/carefulport.h"

#include <algorithm>

using namespace host;

namespace {

QByteArray hex(quint32 value, int digits) {
    return QByteArray::number(value, 16).toUpper().rightJustified(digits, '0');
}

DeviceSetting device() {
    return DeviceSetting(DEVICE_RS485, QStringLiteral("COM2"), 38400, 8, 0, 2);
}

} // namespace

QByteArray readRequest(int station, const QList<quint32>& addresses) {
    QByteArray body = hex(quint32(station), 2) + "00XRN00LL";
    for (const quint32 address : addresses)
        body += hex(address, 8);
    return cplFrame(body);
}

QList<quint32> addressRun(quint32 first, int count) {
    QList<quint32> addresses;
    for (int i = 0; i < count; ++i)
        addresses.append(first + quint32(i));
    return addresses;
}

CarefulPort::CarefulPort(bool care, const DriverSetting& timing) {
    trace.open(QIODevice::WriteOnly);
    PortOptions options;
    options.frame_trace = &frame_trace;
    options.clock = &clock;
    options.usecs = [this] { return 1000 * clock.msecsSinceBoot(); };
    options.care = care;
    port = std::make_unique<HostPort>(
        std::unique_ptr<ByteChannel>(&channel), device(), timing, [](const QString&) {}, options);
}

QByteArray CarefulPort::exchange(const QByteArray& request) {
    constexpr int BufferSize = 420;
    char buffer[BufferSize];
    int length = 0;
    clock.sleepMsecs(PauseMsecs);
    port->control(HostPort::DiscardReceived, QVariant(0));
    port->writeBytes(request.constData(), request.size());
    while (length < BufferSize) {
        const int count = port->readBytes(buffer + length, BufferSize - length);
        if (count < 1)
            break;
        length += count;
        if (buffer[length - 1] == '\n')
            break;
    }
    return QByteArray(buffer, length);
}

/** A good answer by the driver's measure: length, sum, station, end code. */
std::optional<QByteArray> CarefulPort::ask(int station, const QByteArray& request) {
    for (int attempt = 0; attempt <= Repetitions; ++attempt) {
        const QByteArray reply = exchange(request);
        if (passesForGood(reply, station))
            return reply;
    }
    return std::nullopt;
}

std::optional<QList<quint32>> CarefulPort::read(int station, const QList<quint32>& addresses) {
    const std::optional<QByteArray> reply = ask(station, readRequest(station, addresses));
    if (!reply)
        return std::nullopt;
    QList<quint32> values;
    for (int i = 0; i < addresses.size(); ++i)
        values.append(reply->mid(8 + 8 * i, 8).toUInt(nullptr, 16));
    return values;
}

bool CarefulPort::write(int station, quint32 address, quint32 value) {
    const QByteArray body =
        hex(quint32(station), 2) + "00XWN00LL" + hex(address, 8) + hex(value, 8);
    return ask(station, cplFrame(body)).has_value();
}

QList<QByteArray> CarefulPort::traceLines() {
    return trace.data().trimmed().split('\n');
}

int CarefulPort::countTraced(const char* text) {
    const QList<QByteArray> lines = traceLines();
    return int(std::count_if(lines.begin(), lines.end(),
                             [text](const QByteArray& line) { return line.contains(text); }));
}
