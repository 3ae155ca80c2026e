#ifndef HOST_LINE_WIRETIME_H
#define HOST_LINE_WIRETIME_H

#include "runtime/interfaces/devicesetting.h"

#include <algorithm>

namespace host {

/** How long characters take on a line with @p device's settings. */
class WireTime {
public:
    explicit WireTime(const DeviceSetting& device)
        : m_bits(bitsPerCharacter(device)), m_baud(std::max(1, device.baudrate)) {}

    /** Of @p characters that follow each other, in ms, rounded up. */
    int msecs(int characters) const { return roundedUp(2 * qint64(characters)); }

    /** After which a line counts as quiet, in ms: the longer of 3.5 characters and
     *  20 ms. */
    int quietMsecs() const { return std::max(ShortestQuietMsecs, roundedUp(7)); }

private:
    static constexpr int ShortestQuietMsecs = 20;

    static int bitsPerCharacter(const DeviceSetting& device) {
        const int start = 1;
        const int parity = device.parity == DeviceSetting::NoParity ? 0 : 1;
        const int stop = device.stopbits == DeviceSetting::OneStopBit ? 1 : 2;
        return start + device.databits + parity + stop;
    }

    int roundedUp(qint64 half_characters) const {
        return int((half_characters * m_bits * 1000 + 2 * m_baud - 1) / (2 * m_baud));
    }

    const int m_bits; // of a character
    const qint64 m_baud;
};

} // namespace host

#endif
