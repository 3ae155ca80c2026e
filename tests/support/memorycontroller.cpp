#include "tests/support/memorycontroller.h"

namespace {

QByteArray upperHex(quint32 value, int digits) {
    return QByteArray::number(value, 16).toUpper().rightJustified(digits, '0');
}

const int ItemsOffset = 12;      // STX, station, sub-address, "XRN00LL"
const int GroupItemsOffset = 10; // the same with "XWGLL"

} // namespace

QByteArray cplFrame(const QByteArray& body) {
    const QByteArray summed = '\x02' + body + '\x03';
    quint8 sum = 0;
    for (int i = 0; i < summed.size(); ++i)
        sum = quint8(sum + quint8(summed.at(i)));
    return summed + upperHex(quint8(256 - sum), 2) + "\r\n";
}

int requestStation(const QByteArray& request) {
    return request.mid(1, 2).toInt(nullptr, 16);
}

QByteArray requestCommand(const QByteArray& request) {
    return request.mid(6, 2);
}

QList<quint32> requestItems(const QByteArray& request) {
    QList<quint32> items;
    const int first = requestCommand(request) == "WG" ? GroupItemsOffset : ItemsOffset;
    for (int at = first; request.size() > at && request.at(at) != '\x03'; at += 8)
        items.append(request.mid(at, 8).toUInt(nullptr, 16));
    return items;
}

QByteArray MemoryController::answer(const QByteArray& request) {
    QMutexLocker lock(&m_mutex);
    QByteArray body = request.mid(1, 4) + "X00";
    if (requestCommand(request) == "RN") {
        const QList<quint32> items = requestItems(request);
        for (int i = 0; i < items.size(); ++i)
            body += upperHex(m_memory[requestStation(request)][items.at(i)], 8);
    } else {
        store(request);
    }
    return cplFrame(body);
}

void MemoryController::store(const QByteArray& request) {
    std::map<quint32, quint32>& memory = m_memory[requestStation(request)];
    const QList<quint32> items = requestItems(request);
    if (requestCommand(request) == "WG") {
        for (int i = 1; i < items.size(); ++i)
            memory[items.at(0) + quint32(i - 1)] = items.at(i);
        return;
    }
    for (int i = 0; i + 1 < items.size(); i += 2)
        memory[items.at(i)] = items.at(i + 1);
}

quint32 MemoryController::value(int station, quint32 address) const {
    QMutexLocker lock(&m_mutex);
    const auto memory = m_memory.find(station);
    if (memory == m_memory.end())
        return 0;
    const auto found = memory->second.find(address);
    return found == memory->second.end() ? 0 : found->second;
}

void MemoryController::setValue(int station, quint32 address, quint32 value) {
    QMutexLocker lock(&m_mutex);
    m_memory[station][address] = value;
}
