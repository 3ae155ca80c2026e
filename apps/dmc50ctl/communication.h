#ifndef APPS_DMC50CTL_COMMUNICATION_H
#define APPS_DMC50CTL_COMMUNICATION_H

#include "apps/dmc50ctl/target.h"
#include "host/session/driverplugin.h"

#include <functional>

/** Runs a command that talks to controllers: the command on a communication thread, the
 *  application's event loop on the calling one, as in the panel's runtime. Ctrl-C
 *  and SIGTERM end it within a second: the driver cannot be called back from its
 *  own waiting, so what has not ended by itself soon is left behind. Returns the
 *  exit status; does not return when something was left behind, but ends the
 *  program after @p clean_up. */
int communicate(const Target& target, const Options& options, host::DriverPlugin& plugin,
                const std::function<void()>& clean_up);

#endif
