#include "simulator/frame.h"

#include <array>
#include <optional>

namespace simulator {

namespace {

constexpr char Etx = 0x03;
constexpr int HeaderLength = 5;  // STX, station, sub-address
constexpr int TrailerLength = 5; // ETX, checksum, CR LF
constexpr int DigitsPerByte = 2;
constexpr int DigitsPerWord = 8;
constexpr char DeviceCharacter = 'X';

struct CommandShape {
    Command command;
    const char* text;
    const char* name;
    int words_per_item;
    int max_items;
};

constexpr std::array<CommandShape, 3> CommandShapes = {{
    {Command::ReadList, "XRN00LL", "RN", 1, MaxReadAddresses},
    {Command::WriteGroup, "XWGLL", "WG", 1, MaxGroupValues},
    {Command::WriteList, "XWN00LL", "WN", 2, MaxWritePairs},
}};

static_assert(CommandShapes.size() == std::size_t(Command::WriteList) + 1 &&
                  CommandShapes[0].command == Command::ReadList &&
                  CommandShapes[1].command == Command::WriteGroup &&
                  CommandShapes[2].command == Command::WriteList,
              "a command is the index of its shape");

int digitValue(char digit) {
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    return -1;
}

std::optional<quint32> hexAt(const QByteArray& text, int offset, int digits) {
    quint32 number = 0;
    for (int i = offset; i < offset + digits; ++i) {
        const int value = i < text.size() ? digitValue(text.at(i)) : -1;
        if (value < 0)
            return std::nullopt;
        number = number << 4 | quint32(value);
    }
    return number;
}

void appendHex(QByteArray& text, quint32 number, int digits) {
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        text += "0123456789ABCDEF"[number >> shift & 0x0F];
}

ParsedRequest unreadable(const char* reason) {
    ParsedRequest parsed;
    parsed.reason = reason;
    return parsed;
}

ParsedRequest refused(ParsedRequest parsed, EndCode end_code, const char* reason) {
    parsed.state = ParsedRequest::State::Refused;
    parsed.end_code = end_code;
    parsed.reason = reason;
    return parsed;
}

std::optional<std::vector<quint32>> parseWords(const QByteArray& digits) {
    if (digits.size() % DigitsPerWord != 0)
        return std::nullopt;
    std::vector<quint32> words;
    for (int offset = 0; offset < digits.size(); offset += DigitsPerWord) {
        const std::optional<quint32> word = hexAt(digits, offset, DigitsPerWord);
        if (!word)
            return std::nullopt;
        words.push_back(*word);
    }
    return words;
}

/** Sorts the words after the command text into addresses and values. */
void distributeWords(const std::vector<quint32>& words, Request& request) {
    switch (request.command) {
    case Command::ReadList:
        request.addresses = words;
        return;
    case Command::WriteGroup:
        for (std::size_t i = 1; i < words.size(); ++i) {
            request.addresses.push_back(words[0] + quint32(i) - 1);
            request.values.push_back(words[i]);
        }
        return;
    case Command::WriteList:
        for (std::size_t i = 0; i + 1 < words.size(); i += 2) {
            request.addresses.push_back(words[i]);
            request.values.push_back(words[i + 1]);
        }
        return;
    }
}

ParsedRequest parseItems(ParsedRequest parsed, const CommandShape& shape,
                         const QByteArray& digits) {
    const std::optional<std::vector<quint32>> words = parseWords(digits);
    if (!words || words->size() % std::size_t(shape.words_per_item) != 0)
        return refused(parsed, EndMalformedItems, "malformed items");
    Request request = parsed.request;
    request.command = shape.command;
    distributeWords(*words, request);
    if (request.addresses.empty() || int(request.addresses.size()) > shape.max_items)
        return refused(parsed, EndItemCount, "item count out of range");
    parsed.request = request;
    parsed.state = ParsedRequest::State::Good;
    return parsed;
}

} // namespace

const char* commandName(Command command) {
    return CommandShapes[std::size_t(command)].name;
}

QByteArray checksumDigits(const QByteArray& text) {
    quint32 sum = 0;
    for (char byte : text)
        sum += static_cast<unsigned char>(byte);
    QByteArray digits;
    appendHex(digits, (0x100 - (sum & 0xFF)) & 0xFF, DigitsPerByte);
    return digits;
}

ParsedRequest parseRequest(const QByteArray& frame) {
    const int text_end = frame.size() - TrailerLength;
    if (text_end < HeaderLength || frame.at(0) != Stx || frame.at(text_end) != Etx ||
        !frame.endsWith("\r\n"))
        return unreadable("not a frame");
    if (frame.mid(text_end + 1, 2) != checksumDigits(frame.left(text_end + 1))) {
        ParsedRequest parsed = unreadable("bad checksum");
        parsed.bad_checksum = true;
        return parsed;
    }
    const std::optional<quint32> station = hexAt(frame, 1, DigitsPerByte);
    const std::optional<quint32> subaddress = hexAt(frame, 3, DigitsPerByte);
    if (!station || !subaddress)
        return unreadable("no station");
    ParsedRequest parsed;
    parsed.request.station = quint8(*station);
    parsed.request.subaddress = quint8(*subaddress);
    const QByteArray text = frame.mid(HeaderLength, text_end - HeaderLength);
    for (const CommandShape& shape : CommandShapes) {
        if (text.startsWith(shape.text))
            return parseItems(parsed, shape, text.mid(int(qstrlen(shape.text))));
    }
    return refused(parsed, EndUnknownCommand, "unknown command");
}

QByteArray packReply(const Reply& reply) {
    QByteArray frame(1, Stx);
    appendHex(frame, reply.station, DigitsPerByte);
    appendHex(frame, reply.subaddress, DigitsPerByte);
    frame += DeviceCharacter;
    appendHex(frame, reply.end_code, DigitsPerByte);
    for (quint32 word : reply.data)
        appendHex(frame, word, DigitsPerWord);
    frame += Etx;
    return frame + checksumDigits(frame) + "\r\n";
}

} // namespace simulator
