#include "runtime/drivers/addresstext.h"

#include "runtime/base/fatal.h"
#include "runtime/interfaces/projectfiles.h"

namespace {

/** -1 for a character that is no hexadecimal digit. */
int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool isDigitOf(int base, char c) {
    const int digit = hexDigit(c);
    return digit >= 0 && digit < base;
}

bool hasHexPrefix(const char* text, int len) {
    return len >= 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

} // namespace

QString ExtractPrefixSymbol(const QString& text) {
    int length = 0;
    while (length < text.size() &&
           (text.at(length).isLetter() || text.at(length) == QLatin1Char('_')))
        ++length;
    return text.left(length);
}

int ExtractPLCDeviceAddress(const QByteArray& text, int base) {
    if (base != 8 && base != 10 && base != 16)
        return -1;
    int start = 0;
    while (start < text.size() && !isDigitOf(base, text.at(start)))
        ++start;
    return text.mid(start).toInt(nullptr, base);
}

int ExtractPLCDeviceAddress(const QString& text, int base) {
    return ExtractPLCDeviceAddress(text.toLatin1(), base);
}

quint32 HexToUInt(const char* text, int len) {
    quint32 value = 0;
    for (int i = hasHexPrefix(text, len) ? 2 : 0; i < len && text[i] != '\0'; ++i) {
        const int digit = hexDigit(text[i]);
        if (digit < 0)
            return 0;
        value = value << 4 | quint32(digit);
    }
    return value;
}

int DevStrToHmiPort(const QString& dev_str) {
    if (dev_str.startsWith(QLatin1String("ETHERNET"), Qt::CaseInsensitive))
        return EthernetHmiPort;

    int i = dev_str.size() - 1;
    while (i >= 0 && dev_str.at(i) >= QLatin1Char('0') && dev_str.at(i) <= QLatin1Char('9'))
        --i;
    FATAL_CHECK(i >= 0 && (i + 1) < dev_str.size(), "i >= 0 && (i+1) < dev_str.size()");
    return int(dev_str.mid(i + 1).toUInt() + FirstSerialHmiPort - 1);
}

QString dumpByteArray(const QByteArray& bytes) {
    QString text = QString::fromLatin1("(");
    for (int i = 0; i < bytes.size(); ++i)
        text += QLatin1String("0X") + QString::number(uchar(bytes.at(i)), 16) + QLatin1Char(' ');
    return text + QLatin1String(") : ") + QString::fromLatin1(bytes.constData(), bytes.size());
}
