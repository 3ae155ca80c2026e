#include "simulator/transmission.h"

namespace simulator {

namespace {

constexpr int ChecksumFromEnd = 4; // two digits, CR LF

QByteArray withBadChecksum(QByteArray frame) {
    const QByteArray digits = frame.mid(frame.size() - ChecksumFromEnd, 2);
    const int wrong = (digits.toInt(nullptr, 16) + 1) & 0xFF;
    return frame.replace(frame.size() - ChecksumFromEnd, 2,
                         QByteArray(1, char(wrong)).toHex().toUpper());
}

std::vector<Transmission::Piece> dribbled(const QByteArray& frame, int pause_ms) {
    std::vector<Transmission::Piece> pieces;
    for (char byte : frame)
        pieces.push_back({pieces.empty() ? 0 : pause_ms, QByteArray(1, byte)});
    return pieces;
}

Reply fromWrongStation(Reply reply, std::optional<quint8> station) {
    reply.station = station.value_or(quint8(reply.station + 1));
    return reply;
}

Reply refusal(const Reply& reply, quint8 end_code) {
    return {reply.station, reply.subaddress, end_code, {}};
}

std::vector<Transmission::Piece> faultyPieces(const Fault& fault, const Reply& reply) {
    const QByteArray frame = packReply(reply);
    switch (fault.kind) {
    case Fault::Kind::Late:
        return {{fault.ms, frame}};
    case Fault::Kind::Split:
        return {{0, frame.left(fault.at)}, {fault.ms, frame.mid(fault.at)}};
    case Fault::Kind::Dribble:
        return dribbled(frame, fault.ms);
    case Fault::Kind::BadChecksum:
        return {{0, withBadChecksum(frame)}};
    case Fault::Kind::WrongStation:
        return {{0, packReply(fromWrongStation(reply, fault.value))}};
    case Fault::Kind::EndCode:
        return {{0, packReply(refusal(reply, fault.value.value_or(EndUnknownCommand)))}};
    case Fault::Kind::Truncate:
        return {{0, frame.left(fault.at)}};
    case Fault::Kind::NoiseBefore:
        return {{0, fault.bytes + frame}};
    case Fault::Kind::NoiseAfter:
        return {{0, frame + fault.bytes}};
    case Fault::Kind::Echo:
        return {{0, frame}};
    case Fault::Kind::Silence:
    case Fault::Kind::Close:
        break;
    }
    return {};
}

} // namespace

QByteArray Transmission::bytes() const {
    QByteArray all = echo;
    for (const Piece& piece : pieces)
        all += piece.bytes;
    return all;
}

bool preventsAnswer(Fault::Kind kind) {
    return kind == Fault::Kind::Silence || kind == Fault::Kind::Close ||
           kind == Fault::Kind::EndCode;
}

Transmission plainTransmission(const Reply& reply) {
    Transmission transmission;
    transmission.pieces.push_back({0, packReply(reply)});
    return transmission;
}

Transmission faultyTransmission(const Fault& fault, const QByteArray& request, Reply reply) {
    Transmission transmission;
    transmission.pieces = faultyPieces(fault, reply);
    if (fault.kind == Fault::Kind::Echo)
        transmission.echo = request;
    if (fault.kind == Fault::Kind::Close)
        transmission.closed_ms = fault.ms;
    return transmission;
}

} // namespace simulator
