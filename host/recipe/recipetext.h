#ifndef HOST_RECIPE_RECIPETEXT_H
#define HOST_RECIPE_RECIPETEXT_H

#include "host/recipe/recipefinding.h"

#include <QByteArray>
#include <QStringList>

namespace host {

/** One line of a program file, cut into fields. */
struct RecipeLine {
    int number = 0; // from 1, as editors count
    QStringList fields;
};

/** A program file's lines, the titles first, and what is wrong with it as a text.
 *  With a refusal among the findings there may be no lines. */
struct RecipeText {
    QVector<RecipeLine> lines;
    RecipeFindings findings;
};

/** Decodes and cuts the content of a program file exactly as the panel's loader
 *  does. Touches no settings and shows nothing. */
RecipeText readRecipeText(const QByteArray& content);

} // namespace host

#endif
