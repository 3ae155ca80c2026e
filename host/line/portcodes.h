#ifndef HOST_LINE_PORTCODES_H
#define HOST_LINE_PORTCODES_H

/** Codes of DeviceSetting. The driver's default port (8 data bits, even parity,
 *  one stop bit) fixes 2 and 0; the others are this host's choice. */
namespace portcodes {

constexpr int PARITY_NONE = 0;
constexpr int PARITY_ODD = 1;
constexpr int PARITY_EVEN = 2;

constexpr int STOP_ONE = 0;
constexpr int STOP_TWO = 1;

} // namespace portcodes

#endif
