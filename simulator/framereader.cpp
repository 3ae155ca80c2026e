#include "simulator/framereader.h"

#include "simulator/frame.h"

#include <utility>

namespace simulator {

namespace {

constexpr char stx = 0x02;
constexpr char lf = 0x0A;

// Twice the longest good request: refusing one that is too long takes its end.
constexpr int longest_frame = 2 * longest_request;

} // namespace

std::optional<QByteArray> FrameReader::take(char byte) {
    if (byte == stx || m_frame.size() == longest_frame)
        drop();
    if (m_frame.isEmpty() && byte != stx) {
        ++m_dropped;
        return std::nullopt;
    }
    m_frame += byte;
    if (byte != lf)
        return std::nullopt;
    return std::exchange(m_frame, QByteArray());
}

void FrameReader::drop() {
    m_dropped += quint64(m_frame.size());
    m_frame.clear();
}

} // namespace simulator
