#ifndef APPS_DMC50CTL_WATCHCOMMAND_H
#define APPS_DMC50CTL_WATCHCOMMAND_H

#include "apps/dmc50ctl/interruption.h"
#include "apps/dmc50ctl/target.h"
#include "host/session/panelsession.h"

/** Shows the values and the stations once a round: on a terminal in place, and
 *  there each value also as soon as it changes; elsewhere one table after the
 *  other, or with --json one array a line. The first round waits a little for
 *  values that have not come yet. Returns an exit status; runs on the
 *  communication thread and ends soon after an interruption. */
int runWatch(host::PanelSession& session, const Target& target, const Options& options,
             Interruption& interruption);

#endif
