#include "host/line/question.h"

#include "trace/framedecode.h"

#include <algorithm>

namespace host {

namespace {

constexpr char Etx = 0x03;
constexpr int StationPlace = 1;
constexpr int SubaddressPlace = 3;
constexpr int DevicePlace = 5;
constexpr int EndCodePlace = 6;
constexpr int DataPlace = 8;
constexpr int TrailerLength = 5; // ETX, checksum, CR LF
constexpr int SumLength = 4;     // checksum, CR LF
constexpr int DWordDigits = 8;
constexpr int ItemsPlace = 12; // in RN and WN: the header and seven characters of command
constexpr int GroupPlace = 10; // of the start address in WG
constexpr int PairLength = 2 * DWordDigits;

/** 0 to 15; 16 for what is no digit. */
quint32 digitOf(char character) {
    if (character >= '0' && character <= '9')
        return quint32(character - '0');
    const char lower = char(character | 0x20);
    return lower >= 'a' && lower <= 'f' ? quint32(lower - 'a' + 10) : 16;
}

bool isHex(char character) {
    return digitOf(character) < 16;
}

/** 0 when a character is no digit. Every request is read so, fifty times each. */
quint32 addressAt(const QByteArray& request, int place) {
    quint32 address = 0;
    for (int i = place; i < place + DWordDigits; ++i) {
        const quint32 digit = digitOf(request.at(i));
        if (digit > 15)
            return 0;
        address = address << 4 | digit;
    }
    return address;
}

std::vector<quint32> addressesOf(const QByteArray& request, const trace::DecodedFrame& frame) {
    using Kind = trace::DecodedFrame::Kind;
    std::vector<quint32> addresses;
    addresses.reserve(size_t(frame.items));
    for (int i = 0; i < frame.items; ++i) {
        if (frame.kind == Kind::WriteGroup)
            addresses.push_back(addressAt(request, GroupPlace) + quint32(i));
        else
            addresses.push_back(addressAt(
                request,
                ItemsPlace + i * (frame.kind == Kind::ReadList ? DWordDigits : PairLength)));
    }
    return addresses;
}

QByteArray digits(quint32 value, int count) {
    return QByteArray::number(value, 16).toUpper().rightJustified(count, '0');
}

/** The driver reads two digits so: 0 when one of them is none, or at a NUL. */
unsigned twoDigits(const QByteArray& bytes, int place) {
    const QByteArray text = bytes.mid(place, 2);
    const int nul = text.indexOf('\0');
    if (nul >= 0)
        return nul == 1 && isHex(text.at(0)) ? text.left(1).toUInt(nullptr, 16) : 0;
    return isHex(text.at(0)) && isHex(text.at(1)) ? text.toUInt(nullptr, 16) : 0;
}

unsigned sumOf(const QByteArray& bytes, int length) {
    unsigned sum = 0;
    for (int i = 0; i < length; ++i)
        sum += static_cast<unsigned char>(bytes.at(i));
    return sum;
}

bool hasGoodSum(const QByteArray& bytes) {
    const int summed = bytes.size() - SumLength;
    return ((sumOf(bytes, summed) + twoDigits(bytes, summed)) & 0xFF) == 0;
}

/** Every place between start and data end, and the checksum's, that must be a digit. */
bool hasOnlyDigits(const QByteArray& bytes) {
    const auto all_hex = [&bytes](int from, int to) {
        return std::all_of(bytes.begin() + from, bytes.begin() + to, isHex);
    };
    const int sum = bytes.size() - SumLength;
    return all_hex(StationPlace, DevicePlace) && all_hex(EndCodePlace, sum - 1) &&
           all_hex(sum, sum + 2);
}

} // namespace

int Question::replyLength() const {
    return DataPlace + DWordDigits * values() + TrailerLength;
}

std::optional<Question> readQuestion(const QByteArray& request) {
    using Kind = trace::DecodedFrame::Kind;
    const trace::DecodedFrame frame = trace::decodeFrame(trace::Direction::Request, request);
    if (frame.kind == Kind::Unknown || !frame.whole_items || frame.items < 1)
        return std::nullopt;
    Question question;
    question.station = frame.station;
    question.subaddress = request.mid(SubaddressPlace, 2);
    question.is_write = frame.kind != Kind::ReadList;
    question.addresses = addressesOf(request, frame);
    return question;
}

QByteArray makeReadRequest(const Question& question, int count) {
    QByteArray frame =
        "\x02" + digits(quint32(question.station), 2) + question.subaddress + "XRN00LL";
    for (int i = 0; i < count; ++i)
        frame += digits(question.addresses[size_t(i) % question.addresses.size()], DWordDigits);
    frame += Etx;
    return frame + digits((0x100 - sumOf(frame, frame.size())) & 0xFF, 2) + "\r\n";
}

std::optional<WholeReply> readWholeReply(const QByteArray& bytes) {
    const trace::DecodedFrame frame = trace::decodeFrame(trace::Direction::Reply, bytes);
    if (frame.kind != trace::DecodedFrame::Kind::Reply || !frame.whole_items ||
        bytes.at(DevicePlace) != 'X' || !hasOnlyDigits(bytes) || !hasGoodSum(bytes))
        return std::nullopt;
    WholeReply reply;
    reply.station = frame.station;
    reply.subaddress = bytes.mid(SubaddressPlace, 2);
    reply.values = frame.items;
    reply.refused = frame.end_code != "00";
    return reply;
}

bool isAnswer(const WholeReply& reply, const Question& question) {
    return reply.station == question.station && reply.subaddress == question.subaddress &&
           (reply.refused || reply.values == question.values());
}

bool passesForGood(const QByteArray& bytes, int station) {
    return bytes.size() > LossLength && hasGoodSum(bytes) &&
           twoDigits(bytes, StationPlace) == unsigned(station) &&
           twoDigits(bytes, EndCodePlace) == 0;
}

} // namespace host
