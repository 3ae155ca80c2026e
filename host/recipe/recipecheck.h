#ifndef HOST_RECIPE_RECIPECHECK_H
#define HOST_RECIPE_RECIPECHECK_H

#include "host/recipe/recipeformat.h"
#include "host/recipe/recipetext.h"

#include <array>
#include <optional>

namespace host {

/** One line of a program file whose values are all numbers. */
struct RecipeProgram {
    int line = 0;   // of the file
    int number = 0; // that its label says; 0: none
    std::array<quint32, RecipeColumns> values = {};

    /** The value of a RecipeColumn other than the label. */
    quint32 value(int column) const { return values[std::size_t(column) - 1]; }

    /** A slot of the controller that nobody has filled. */
    bool isUnused() const { return values == std::array<quint32, RecipeColumns>{}; }
};

/** What was found in a program file. */
struct RecipeCheck {
    RecipeFindings findings; // those of the whole file first, then in the file's order
    QVector<RecipeProgram> programs;
    int lines = 0; // that hold programs, good or bad

    int count(RecipeSeverity severity) const;

    /** Whether the controller would hold just what the file says. */
    bool isGood() const;
};

/** Checks a program file without a controller: what the driver would refuse, and
 *  what it would take without a word although the controller would then not hold
 *  what the file says. With @p count the panel is to transfer so many programs:
 *  more are not looked at, fewer are a finding. */
RecipeCheck checkRecipe(const QByteArray& content, std::optional<int> count = std::nullopt);

} // namespace host

#endif
