// Any bytes as a controller's reply, in any pieces: a reply that is accepted has
// a right checksum, the right station and end code 0, and its values are its own.
#include "tests/unit/dmc50v3/polledblock.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

const int DoubleWords = 3;

void require(bool condition) {
    if (!condition)
        std::abort();
}

/** The part of @p reply that the driver collects: up to a piece that ends with
 *  LF, at most its buffer. */
QByteArray collected(const QByteArray& reply, int chunk) {
    QByteArray bytes;
    while (bytes.size() < 420 && bytes.size() < reply.size()) {
        bytes += reply.mid(bytes.size(), std::min(chunk, 420 - int(bytes.size())));
        if (bytes.endsWith('\n'))
            break;
    }
    return bytes;
}

/** @p field up to its first NUL as a hexadecimal number; 0 unless all of it is
 *  digits. */
quint32 readHex(const QByteArray& field) {
    QByteArray digits(field.constData());
    if (digits.toLower().startsWith("0x"))
        digits.remove(0, 2);
    const bool is_hex = std::all_of(digits.begin(), digits.end(),
                                    [](char digit) { return std::isxdigit(uchar(digit)) != 0; });
    return is_hex ? digits.toUInt(nullptr, 16) : 0;
}

void checkAccepted(const QByteArray& frame, PollingThread& thread) {
    require(frame.size() >= 13);
    unsigned sum = 0;
    for (int i = 0; i < frame.size() - 4; ++i)
        sum += quint8(frame.at(i));
    require(((sum + readHex(frame.mid(frame.size() - 4, 2))) & 0xFF) == 0);
    for (int i = 0; i < DoubleWords; ++i) {
        quint32 value = 0;
        require(thread.getDWordFromDataCacheMap(1, quint32(i), value));
        if (frame.size() >= 16 + 8 * i)
            require(value == readHex(frame.mid(8 + 8 * i, 8)));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const int chunk = data[0] == 0 ? 1000 : data[0];
    const QByteArray reply(reinterpret_cast<const char*>(data + 1), int(size) - 1);
    PolledBlock block(DoubleWords, FixedReplyPort(reply, chunk));
    block.probe.takeOverSession();
    block.probe.pollingScan();
    if (block.thread.hasError())
        require(!block.thread.getLastError().isEmpty());
    else
        checkAccepted(collected(reply, chunk), block.thread);
    return 0;
}
