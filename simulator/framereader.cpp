#include "simulator/framereader.h"

#include "simulator/frame.h"

#include <utility>

namespace simulator {

namespace {

constexpr char Lf = 0x0A;

// Twice the longest good request: refusing one that is too long takes its end.
constexpr int LongestFrame = 2 * LongestRequest;

} // namespace

std::optional<QByteArray> FrameReader::take(char byte) {
    if (byte == Stx || m_frame.size() == LongestFrame)
        drop();
    if (m_frame.isEmpty() && byte != Stx) {
        ++m_dropped;
        return std::nullopt;
    }
    m_frame += byte;
    if (byte != Lf)
        return std::nullopt;
    return std::exchange(m_frame, QByteArray());
}

void FrameReader::drop() {
    m_dropped += quint64(m_frame.size());
    m_frame.clear();
}

} // namespace simulator
