#ifndef HOST_RECIPE_RECIPEPICTURE_H
#define HOST_RECIPE_RECIPEPICTURE_H

#include "host/recipe/recipeprofile.h"

#include <QColor>
#include <QImage>

namespace host {

/** Colour of the set temperature's curve. */
constexpr QRgb RecipeCurveColor = 0xFFC62828;

/** A picture of the profile under @p title: the set temperature with its soak band
 *  over the PID groups, and below it the events and inputs that are on. Needs a
 *  QApplication, in the GUI thread; a display is not needed. Null when no program
 *  takes time. */
QImage recipePicture(const RecipeProfile& profile, const QString& title,
                     const QSize& size = QSize(1400, 900));

} // namespace host

#endif
