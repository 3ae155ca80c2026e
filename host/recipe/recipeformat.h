#ifndef HOST_RECIPE_RECIPEFORMAT_H
#define HOST_RECIPE_RECIPEFORMAT_H

#include <QStringList>

namespace host {

/** A program file as the panel writes it: UTF-16LE with a byte-order mark, a line
 *  of titles, then a line for each program, tabs between the fields, a line feed
 *  behind every line. */
constexpr int RECIPE_PROGRAMS = 32; // of a controller
constexpr int RECIPE_COLUMNS = 24;  // of a program
constexpr int RECIPE_FIELDS = 25;   // of a line: a label and the values

/** Fields of a line. The driver's error log counts values as these columns. */
enum RecipeColumn {
    RECIPE_LABEL = 0,
    RECIPE_TEMPERATURE = 1,
    RECIPE_HOURS = 2,
    RECIPE_MINUTES = 3,
    RECIPE_SECONDS = 4,
    RECIPE_SOAK_PLUS = 5,
    RECIPE_SOAK_MINUS = 6,
    RECIPE_PID_GROUP = 7,
    RECIPE_FIRST_EVENT = 9,  // of 12
    RECIPE_FIRST_INPUT = 21, // of 4
};
constexpr int RECIPE_EVENTS = 12;
constexpr int RECIPE_INPUTS = 4;

/** The titles of the 25 fields. */
const QStringList& recipeTitles();

/** The label of program @p number. */
QString recipeLabel(int number);

/** The program that a label names; 0 when it is no such label. */
int recipeLabelNumber(const QString& label);

} // namespace host

#endif
