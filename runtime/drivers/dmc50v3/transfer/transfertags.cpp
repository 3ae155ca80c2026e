#include "runtime/drivers/dmc50v3/transfer/transfertags.h"

namespace TransferTags {

bool isTag(const QString& address, const char* tag) {
    return address.contains(QLatin1String(tag));
}

qint32 writtenValue(const QByteArray& data) {
    quint32 value = 0;
    for (int i = 0; i < qMin(data.size(), 4); ++i)
        value |= quint32(uchar(data.at(i))) << 8 * i;
    switch (data.size()) {
    case 1:
        return qint8(value);
    case 2:
        return qint16(value);
    default:
        return qint32(value);
    }
}

void storeFlag(bool flag, QByteArray& data) {
    if (!data.isEmpty())
        data[0] = flag ? 1 : 0;
}

void storeValue(qint32 value, QByteArray& data) {
    for (int i = 0; i < qMin(data.size(), 4); ++i)
        data[i] = char(quint32(value) >> 8 * i & 0xFF);
}

} // namespace TransferTags
