#ifndef APPS_DMC50DEMO_FURNACELINE_H
#define APPS_DMC50DEMO_FURNACELINE_H

#include "host/project/project.h"
#include "simulator/line.h"

#include <memory>

/** Bits a second of the demo's line. */
constexpr int FurnaceBaud = 38400;

/** A line on a kernel pty, as slow as a real one, with a controller for each of the
 *  project's nodes. Not started. */
std::unique_ptr<simulator::Line> makeFurnaceLine(const host::Project& project);

/** Gives the controllers the values of a running vacuum furnace, most of them
 *  moving, where the sample project's tags are. */
Result<void> runFurnace(simulator::Line& line, const host::Project& project);

#endif
