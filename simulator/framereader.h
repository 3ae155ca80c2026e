#ifndef SIMULATOR_FRAMEREADER_H
#define SIMULATOR_FRAMEREADER_H

#include <QByteArray>

#include <optional>

namespace simulator {

/** Cuts the bytes of a line into frames, however they arrive: a frame runs from
 *  an STX to the next LF. Bytes outside a frame are noise; an STX inside a frame
 *  begins a new one, because the rest of the old one was lost. */
class FrameReader {
public:
    /** Takes the next byte. Returns the frame that it completes, if it does. */
    std::optional<QByteArray> take(char byte);

    /** Bytes thrown away so far: noise, and frames that were never completed. */
    quint64 droppedBytes() const { return m_dropped; }

private:
    void drop();

    QByteArray m_frame; // empty while waiting for an STX
    quint64 m_dropped = 0;
};

} // namespace simulator

#endif
