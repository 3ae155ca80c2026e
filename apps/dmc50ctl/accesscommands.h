#ifndef APPS_DMC50CTL_ACCESSCOMMANDS_H
#define APPS_DMC50CTL_ACCESSCOMMANDS_H

#include "apps/dmc50ctl/target.h"
#include "apps/dmc50ctl/valuetable.h"
#include "host/session/panelsession.h"

/** The commands that talk to controllers. Each returns an exit status; they run
 *  on the communication thread and end soon after @p interrupted is set and the
 *  session cancelled. */

int runRead(host::PanelSession& session, const Target& target, const Options& options);

/** One tag after the other; the first failure ends it. */
int runWrite(host::PanelSession& session, const Target& target, const QVector<QByteArray>& values,
             const Options& options);

/** The bytes of the texts in target.values; an error for each that does not fit its
 *  tag. */
Result<QVector<QByteArray>, QStringList> parseValues(const Target& target);

#endif
