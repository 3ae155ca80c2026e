#ifndef HOST_RECIPE_RECIPEFORMAT_H
#define HOST_RECIPE_RECIPEFORMAT_H

#include <QStringList>

namespace host {

/** A program file as the panel writes it: UTF-16LE with a byte-order mark, a line
 *  of titles, then a line for each program, tabs between the fields, a line feed
 *  behind every line. */
constexpr int RecipePrograms = 32; // of a controller
constexpr int RecipeColumns = 24;  // of a program
constexpr int RecipeFields = 25;   // of a line: a label and the values

/** Fields of a line. The driver's error log counts values as these columns. */
enum RecipeColumn {
    RecipeLabel = 0,
    RecipeTemperature = 1,
    RecipeHours = 2,
    RecipeMinutes = 3,
    RecipeSeconds = 4,
    RecipeSoakPlus = 5,
    RecipeSoakMinus = 6,
    RecipePidGroup = 7,
    RecipeFirstEvent = 9,  // of 12
    RecipeFirstInput = 21, // of 4
};
constexpr int RecipeEvents = 12;
constexpr int RecipeInputs = 4;

/** The titles of the 25 fields. */
const QStringList& recipeTitles();

/** The label of program @p number. */
QString recipeLabel(int number);

/** The program that a label names; 0 when it is no such label. */
int recipeLabelNumber(const QString& label);

} // namespace host

#endif
