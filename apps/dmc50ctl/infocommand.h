#ifndef APPS_DMC50CTL_INFOCOMMAND_H
#define APPS_DMC50CTL_INFOCOMMAND_H

#include "apps/dmc50ctl/options.h"
#include "host/project/project.h"
#include "host/session/driverplugin.h"

/** Prints what the driver says of itself and, where there is one, what the
 *  project holds. Talks to no controller. */
int runInfo(host::DriverPlugin& plugin, const host::Project* project, const Options& options);

#endif
