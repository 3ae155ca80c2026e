#ifndef SIMULATOR_FRAME_H
#define SIMULATOR_FRAME_H

#include <QByteArray>

#include <vector>

namespace simulator {

/** What a controller can be asked for. */
enum class Command {
    ReadList,   // RN: double words at a list of addresses
    WriteGroup, // WG: consecutive double words from a start address
    WriteList,  // WN: address and value pairs
};

/** "RN", "WG" or "WN". */
const char* commandName(Command command);

/** Most items of one request: what fits into a controller's receive buffer. */
constexpr int MaxReadAddresses = 50;
constexpr int MaxGroupValues = 50;
constexpr int MaxWritePairs = 25;

/** Length of the longest request, RN and WN at their limits being 417. */
constexpr int LongestRequest = 423;

/** The character that begins a frame. */
constexpr char Stx = 0x02;

/** The end codes of the simulated controller. Those of a real one are unknown
 *  here; these three are the simulator's own. */
enum EndCode : quint8 {
    EndOk = 0x00,
    EndUnknownCommand = 0x41,
    EndMalformedItems = 0x42, // not uppercase hexadecimal, or not whole items
    EndItemCount = 0x43,      // no item, or more than the limit
};

struct Request {
    quint8 station = 0;
    quint8 subaddress = 0;
    Command command = Command::ReadList;
    std::vector<quint32> addresses; // of a WG, one per double word
    std::vector<quint32> values;    // of a write, one per address
};

/** The outcome of reading the bytes of one request. */
struct ParsedRequest {
    enum class State {
        Good,
        Refused,    // for this station, but only end_code can be the answer
        Unreadable, // a controller stays silent: reason says why
    };
    State state = State::Unreadable;
    Request request;           // when refused: station and sub-address only
    quint8 end_code = EndOk;   // not EndOk when refused
    const char* reason = "";   // of Unreadable and Refused, for the log
    bool bad_checksum = false; // the reason in particular
};

/** Reads one request, from its STX to its LF. */
ParsedRequest parseRequest(const QByteArray& frame);

struct Reply {
    quint8 station = 0;
    quint8 subaddress = 0;
    quint8 end_code = EndOk;
    std::vector<quint32> data; // one double word per address of a read
};

/** The bytes of a reply, from STX to LF. */
QByteArray packReply(const Reply& reply);

/** The two digits that make the sum of @p text, from STX to ETX, 0 modulo 256. */
QByteArray checksumDigits(const QByteArray& text);

} // namespace simulator

#endif
