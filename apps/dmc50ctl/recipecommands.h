#ifndef APPS_DMC50CTL_RECIPECOMMANDS_H
#define APPS_DMC50CTL_RECIPECOMMANDS_H

#include "apps/dmc50ctl/target.h"
#include "host/session/panelsession.h"
#include "host/transfer/paneloperator.h"

#include <atomic>

/** What the driver is to transfer on which link of @p project. */
Result<host::RecipeOrder> recipeOrder(const host::Project& project, const Options& options);

/** Transfers target.recipe and reports it, unless it was @p interrupted. Returns an
 *  exit status. Communication thread. */
int runRecipe(host::PanelSession& session, const Target& target, host::PanelOperator& panel,
              const Options& options, const std::atomic<bool>& interrupted);

#endif
