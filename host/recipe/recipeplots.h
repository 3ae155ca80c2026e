#ifndef HOST_RECIPE_RECIPEPLOTS_H
#define HOST_RECIPE_RECIPEPLOTS_H

#include "host/recipe/recipeprofile.h"

class QWidget;
class QwtPlot;

namespace host {

/** The parts of a recipe's picture. GUI thread; owned by @p parent. @{ */

/** The set temperature over time, with the programs' numbers and PID groups. */
QwtPlot* makeCurvePlot(const RecipeProfile& profile, QWidget* parent);

/** A bar for every event and input, over the same time. */
QwtPlot* makeTrackPlot(const RecipeProfile& profile, const QVector<RecipeTrack>& tracks,
                       QWidget* parent);

/** @} */

/** Puts @p upper's time right above @p lower's, which shows the scale for both. */
void alignPlots(QwtPlot& upper, QwtPlot& lower);

} // namespace host

#endif
