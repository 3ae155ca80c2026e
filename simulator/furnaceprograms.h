#ifndef SIMULATOR_FURNACEPROGRAMS_H
#define SIMULATOR_FURNACEPROGRAMS_H

#include <QtGlobal>

#include <array>

namespace simulator {

/** The controller's program memory: 32 programs of 24 double words, one every
 *  0x20 addresses from 0x1000. */
constexpr int ProgramCount = 32;
constexpr int ProgramLength = 24;
constexpr quint32 ProgramBase = 0x1000;
constexpr quint32 ProgramSpacing = 0x20;

using FurnaceProgram = std::array<quint32, ProgramLength>;

/** The program that a new controller holds in slot @p number, 1 to 32. Double
 *  words: set point (degrees), hours, minutes, seconds, soak band + and -, PID
 *  group, an unused one, events 1 to 12 and inputs 1 to 4 as 0 or 1. */
FurnaceProgram factoryProgram(int number);

} // namespace simulator

#endif
