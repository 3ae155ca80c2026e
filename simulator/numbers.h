#ifndef SIMULATOR_NUMBERS_H
#define SIMULATOR_NUMBERS_H

#include <QString>

#include <optional>

namespace simulator {

/** A 32-bit number as people write it: decimal, hexadecimal after 0x, or a
 *  negative decimal down to -2147483648, which stands for its two's complement.
 *  Nothing when the text is none of these. */
std::optional<quint32> parseNumber(const QString& text);

/** A station number in decimal, 1 to 255. */
std::optional<quint8> parseStation(const QString& text);

/** An address with the station it belongs to. */
struct StationAddress {
    std::optional<quint8> station; // none: every station of the line
    quint32 address = 0;
};

/** "0x1000", or "2-0x1000" for station 2 only. */
std::optional<StationAddress> parseStationAddress(const QString& text);

/** "0x00001000" */
QString hexText(quint32 number);

} // namespace simulator

#endif
