#include "trace/framedecode.h"

#include "trace/escapedtext.h"

#include <algorithm>

namespace trace {

namespace {

constexpr char Stx = 0x02;
constexpr char Etx = 0x03;
constexpr int HeaderLength = 5;  // STX, station, sub-address
constexpr int TrailerLength = 5; // ETX, checksum, CR LF
constexpr int AddressLength = 8; // a double word or its address, as digits
constexpr int EndCodeLength = 3; // device character, end code
constexpr int ShortestFrame = HeaderLength + EndCodeLength + TrailerLength;

struct CommandShape {
    const char* text;
    const char* name;
    DecodedFrame::Kind kind;
    int item_length;  // characters
    int fixed_length; // characters between the command text and the items
};

constexpr CommandShape CommandShapes[] = {
    {"XRN00LL", "RN", DecodedFrame::Kind::ReadList, 8, 0},
    {"XWGLL", "WG", DecodedFrame::Kind::WriteGroup, 8, 8},
    {"XWN00LL", "WN", DecodedFrame::Kind::WriteList, 16, 0},
};

bool hasFrameEnds(const QByteArray& bytes) {
    return bytes.size() >= ShortestFrame && bytes.at(0) == Stx && bytes.endsWith("\r\n") &&
           bytes.at(bytes.size() - TrailerLength) == Etx;
}

void countItems(DecodedFrame& frame, int characters, int item_length) {
    frame.items = std::max(characters, 0) / item_length;
    frame.whole_items = characters >= 0 && characters % item_length == 0;
}

DecodedFrame decodeRequest(DecodedFrame frame, const QByteArray& text) {
    for (const CommandShape& shape : CommandShapes) {
        if (!text.startsWith(shape.text))
            continue;
        const QByteArray body = text.mid(int(qstrlen(shape.text)));
        frame.kind = shape.kind;
        frame.first_address = body.left(AddressLength);
        countItems(frame, body.size() - shape.fixed_length, shape.item_length);
        return frame;
    }
    return DecodedFrame();
}

DecodedFrame decodeReply(DecodedFrame frame, const QByteArray& text) {
    frame.kind = DecodedFrame::Kind::Reply;
    frame.end_code = text.mid(1, 2);
    countItems(frame, text.size() - EndCodeLength, AddressLength);
    return frame;
}

QByteArray kindName(DecodedFrame::Kind kind) {
    for (const CommandShape& shape : CommandShapes) {
        if (shape.kind == kind)
            return shape.name;
    }
    return "reply";
}

} // namespace

DecodedFrame decodeFrame(Direction direction, const QByteArray& bytes) {
    bool is_number = false;
    DecodedFrame frame;
    frame.station = bytes.mid(1, 2).toInt(&is_number, 16);
    if (!hasFrameEnds(bytes) || !is_number)
        return DecodedFrame();
    const QByteArray text = bytes.mid(HeaderLength, bytes.size() - HeaderLength - TrailerLength);
    return direction == Direction::Request ? decodeRequest(frame, text) : decodeReply(frame, text);
}

ChecksumVerdict judgeChecksum(const QByteArray& bytes) {
    ChecksumVerdict verdict;
    if (bytes.size() < ShortestFrame || !bytes.endsWith("\r\n"))
        return verdict;
    unsigned sum = 0;
    for (int i = 0; i < bytes.size() - 4; ++i)
        sum += static_cast<unsigned char>(bytes.at(i));
    verdict.found = bytes.mid(bytes.size() - 4, 2);
    verdict.expected = QByteArray(1, char(0x100 - (sum & 0xFF))).toHex().toUpper();
    verdict.state = verdict.found == verdict.expected ? ChecksumVerdict::State::Ok
                                                      : ChecksumVerdict::State::Bad;
    return verdict;
}

QByteArray describeFrame(Direction direction, const QByteArray& bytes) {
    const DecodedFrame frame = decodeFrame(direction, bytes);
    if (frame.kind == DecodedFrame::Kind::Unknown)
        return "unknown bytes=" + QByteArray::number(bytes.size());
    QByteArray text = kindName(frame.kind) + " station=" + QByteArray::number(frame.station);
    if (frame.kind == DecodedFrame::Kind::Reply)
        text += " end=" + escapedText(frame.end_code) + " data=" + QByteArray::number(frame.items);
    else
        text += " items=" + QByteArray::number(frame.items) +
                " first=" + escapedText(frame.first_address);
    return frame.whole_items ? text : text + " cut";
}

QByteArray describeChecksum(const QByteArray& bytes) {
    const ChecksumVerdict verdict = judgeChecksum(bytes);
    switch (verdict.state) {
    case ChecksumVerdict::State::Ok:
        return "ok";
    case ChecksumVerdict::State::Bad:
        return "bad found=" + escapedText(verdict.found) + " expected=" + verdict.expected;
    case ChecksumVerdict::State::Absent:
        break;
    }
    return "none";
}

} // namespace trace
