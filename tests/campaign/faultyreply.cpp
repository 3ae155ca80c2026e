#include "tests/campaign/faultyreply.h"

#include <algorithm>

namespace campaign {

namespace {

using Kind = LineFault::Kind;

constexpr int DataOffset = 8;
constexpr int TrailerLength = 5;  // ETX, checksum, CR LF
constexpr int ForgingTrials = 20; // digits that have a neighbour are found by then

/** Noise often holds what frames are made of. */
QByteArray noise(int count, Dice& dice) {
    static const QByteArray likely("\x02\x03\r\n0A\xFF\x00", 8);
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes += dice.chance(0.5) ? likely.at(dice.between(0, likely.size() - 1))
                                  : char(dice.between(0, 255));
    return bytes;
}

simulator::Fault simulatorsFault(const LineFault& fault, int reply_length, Dice& dice) {
    simulator::Fault same;
    same.kind = simulator::Fault::Kind(int(fault.kind));
    same.ms = fault.kind == Kind::Dribble ? std::min(fault.ms, 20) : fault.ms;
    same.at = fault.at % reply_length;
    same.value = quint8(fault.value);
    same.bytes = noise(1 + fault.at % 6, dice);
    return same;
}

QByteArray tampered(const LineFault& fault, const AnswerParts& parts, Dice& dice) {
    QByteArray frame = simulator::packReply(parts.reply);
    const int at = fault.at % frame.size();
    switch (fault.kind) {
    case Kind::Deleted:
        return frame.remove(at, 1 + fault.value % 3);
    case Kind::Inserted:
        return frame.insert(at, noise(1 + fault.value % 3, dice));
    case Kind::Glued:
        return frame + parts.before;
    case Kind::OtherStation:
        return parts.foreign;
    case Kind::Forged:
        return forged(frame, dice);
    default:
        return QByteArray();
    }
}

/** Moves the digit at @p at by one without leaving the digits. */
bool step(QByteArray& frame, int at, int by) {
    const char moved = char(frame.at(at) + by);
    if (!((moved >= '0' && moved <= '9') || (moved >= 'A' && moved <= 'F')))
        return false;
    frame[at] = moved;
    return true;
}

} // namespace

bool isUnheard(Kind kind) {
    return kind == Kind::Silence || kind == Kind::Close || kind == Kind::EndCode ||
           kind == Kind::Dead || kind == Kind::PowerLoss || kind == Kind::OtherStation;
}

simulator::Transmission faultyAnswer(const LineFault& fault, const AnswerParts& parts, Dice& dice) {
    if (int(fault.kind) <= int(simulator::Fault::Kind::Close)) {
        const int length = simulator::packReply(parts.reply).size();
        return simulator::faultyTransmission(simulatorsFault(fault, length, dice), parts.request,
                                             parts.reply);
    }
    simulator::Transmission transmission;
    const QByteArray bytes = tampered(fault, parts, dice);
    if (!bytes.isEmpty())
        transmission.pieces.push_back({0, bytes});
    return transmission;
}

QByteArray forged(QByteArray frame, Dice& dice) {
    const int last = frame.size() - TrailerLength - 1;
    for (int trial = 0; trial < ForgingTrials && last > DataOffset; ++trial) {
        QByteArray changed = frame;
        const int up = dice.between(DataOffset, last), down = dice.between(DataOffset, last);
        if (up != down && step(changed, up, 1) && step(changed, down, -1))
            return changed;
    }
    return frame;
}

} // namespace campaign
