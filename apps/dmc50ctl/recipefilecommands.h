#ifndef APPS_DMC50CTL_RECIPEFILECOMMANDS_H
#define APPS_DMC50CTL_RECIPEFILECOMMANDS_H

#include "apps/dmc50ctl/options.h"

/** Commands on a program file; they talk to no controller. Each returns an exit
 *  status. */

/** Lists everything that is wrong. ExitOk exactly when a controller would hold
 *  what the file says. */
int runRecipeCheck(const Options& options);

/** Prints the programs and the course of temperature, and draws a picture where
 *  one is asked for, which needs a QApplication. ExitOk unless the driver would
 *  refuse the file, or the picture fails. */
int runRecipeShow(const Options& options);

#endif
