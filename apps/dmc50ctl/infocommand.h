#ifndef APPS_DMC50CTL_INFOCOMMAND_H
#define APPS_DMC50CTL_INFOCOMMAND_H

#include "apps/dmc50ctl/interruption.h"
#include "apps/dmc50ctl/target.h"
#include "host/session/panelsession.h"

/** Prints what the driver says of itself. Returns an exit status. */
int runDriverInfo(host::DriverPlugin& plugin, const Options& options);

/** Prints what the driver says of itself, what the project holds, and how its
 *  stations are: each link whose port opens is listened to for a moment. A link
 *  that does not answer is no failure, but what is told. On the communication
 *  thread. */
int runInfo(host::DriverPlugin& plugin, const Target& target, const Options& options,
            const host::PanelSetup& setup, Interruption& interruption);

#endif
