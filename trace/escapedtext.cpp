#include "trace/escapedtext.h"

namespace trace {

namespace {

bool standsForItself(char byte) {
    return byte >= ' ' && byte <= '~' && byte != '<';
}

} // namespace

QByteArray escapedText(const QByteArray& bytes) {
    static const char digits[] = "0123456789ABCDEF";
    QByteArray text;
    text.reserve(bytes.size() + 16);
    for (char byte : bytes) {
        if (standsForItself(byte)) {
            text += byte;
            continue;
        }
        const auto value = static_cast<unsigned char>(byte);
        text += '<';
        text += digits[value >> 4];
        text += digits[value & 0x0F];
        text += '>';
    }
    return text;
}

std::optional<QByteArray> unescapedBytes(const QByteArray& text) {
    QByteArray bytes;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) != '<') {
            bytes += text.at(i);
            continue;
        }
        const QByteArray digits = text.mid(i + 1, 2);
        const QByteArray byte = QByteArray::fromHex(digits);
        if (byte.toHex() != digits.toLower() || byte.size() != 1 || text.mid(i + 3, 1) != ">")
            return std::nullopt;
        bytes += byte;
        i += 3;
    }
    return bytes;
}

} // namespace trace
