#ifndef HOST_RECIPE_RECIPETABLE_H
#define HOST_RECIPE_RECIPETABLE_H

#include "host/recipe/recipeprofile.h"

#include <QStringList>

namespace host {

/** Rows of a table of all programs, the head first: number, start, duration, set
 *  temperature, soak band, PID group, and the events and inputs that are on. An
 *  unused program shows its number only. */
QVector<QStringList> recipeTable(const QVector<RecipeProgram>& programs);

} // namespace host

#endif
