#ifndef HOST_PROJECT_PROJECTADDRESS_H
#define HOST_PROJECT_PROJECTADDRESS_H

#include "common/result.h"

#include <QString>
#include <QtGlobal>

#include <optional>

namespace host {

/** What a tag's address stands for. */
enum class AddressKind {
    Data,           // double words of a controller
    LowLatency,     // marks its station as one to be set up for low latency
    InitDriver,     // "INITDRV0"
    WriteQueueSize, // "WRITE_QUE_SIZE0": writes that wait for the station
    Transfer        // "VVT_...": program transfer
};

/** A tag address that the driver will accept. The driver ends the program on a
 *  malformed one, so nothing else may reach a project's database. */
struct ProjectAddress {
    AddressKind kind = AddressKind::Data;
    QString text;               // for the driver: in capitals, without station and bit
    std::optional<int> station; // as prefixed, 1 to 255; none: the link's default
    quint32 dword = 0;          // Data: the first double word
    std::optional<int> bit;     // Data: counted from bit 0 of the first double word

    /** The text with its bit, as the driver's read and write take it. */
    QString accessText() const;
};

/** The highest bit number: a tag has less than 256 double words. */
constexpr int LargestBit = 255 * 32 - 1;

/** Reads the forms PA0011000, NA1F, 2-PA0011000, NA2016.4 and the special
 *  addresses, in capitals or not. The error says what is wrong and what would be
 *  right. */
Result<ProjectAddress> parseProjectAddress(const QString& text);

} // namespace host

#endif
