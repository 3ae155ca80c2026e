#ifndef HOST_RECIPE_RECIPECHART_H
#define HOST_RECIPE_RECIPECHART_H

#include "host/recipe/recipeprofile.h"

#include <QStringList>

namespace host {

/** The room for a chart in a terminal, and what the terminal can show. */
struct RecipeChartStyle {
    int columns = 80; // all in all
    int rows = 16;    // of the curve, without the scale below it
    bool unicode = true;
};

/** The set temperature over time as lines of text, in Braille dots or, without
 *  Unicode, in asterisks. Empty when no program takes time. */
QStringList recipeChart(const RecipeProfile& profile, const RecipeChartStyle& style);

} // namespace host

#endif
