#ifndef TRACE_FRAMEDECODE_H
#define TRACE_FRAMEDECODE_H

#include <QByteArray>

namespace trace {

/** Which way a frame went: from the panel to a controller, or back. */
enum class Direction { Request, Reply };

/** What a traced frame says, as far as its bytes can be understood. */
struct DecodedFrame {
    enum class Kind {
        ReadList,   // RN: a list of addresses
        WriteGroup, // WG: consecutive double words from a start address
        WriteList,  // WN: address and value pairs
        Reply,
        Unknown // not a frame in this direction; nothing below is set
    };
    Kind kind = Kind::Unknown;
    int station = 0;
    int items = 0;            // addresses, double words or pairs; double words of a reply
    bool whole_items = true;  // false: the text ends in the middle of an item
    QByteArray first_address; // of a request, its 8 digits as sent; empty without items
    QByteArray end_code;      // of a reply, its 2 digits as sent
};

/** The two checksum digits of a frame held against its bytes. */
struct ChecksumVerdict {
    enum class State { Ok, Bad, Absent };
    State state = State::Absent; // Absent: too short, or not ended by CR LF
    QByteArray found;            // the two characters in the checksum's place
    QByteArray expected;         // the digits that would be right
};

/** Takes @p bytes apart as a frame that begins at the first byte. Noise before
 *  or after makes it Unknown. Reply data is counted up to the ETX. */
DecodedFrame decodeFrame(Direction direction, const QByteArray& bytes);

/** Judges the checksum as a receiver does: all bytes but the last four are
 *  summed, whatever they are. Frames below 13 characters have none. */
ChecksumVerdict judgeChecksum(const QByteArray& bytes);

/** "RN station=1 items=50 first=00001000", "reply station=1 end=00 data=50",
 *  "unknown bytes=7"; an item cut short adds " cut". */
QByteArray describeFrame(Direction direction, const QByteArray& bytes);

/** "ok", "bad found=00 expected=C1" or "none". */
QByteArray describeChecksum(const QByteArray& bytes);

} // namespace trace

#endif
