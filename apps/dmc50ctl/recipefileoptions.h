#ifndef APPS_DMC50CTL_RECIPEFILEOPTIONS_H
#define APPS_DMC50CTL_RECIPEFILEOPTIONS_H

#include "host/recipe/recipeformat.h"

#include <QString>

#include <string>

namespace CLI {
class App;
}

/** What the recipe commands that need no controller are asked for. */
struct RecipeFileOptions {
    QString file;
    int count = host::RecipePrograms; // that a file to be checked should have
    QString picture;                  // file to draw into; empty: no picture
    bool steps = false;               // set temperatures change at once
    bool ascii = false;
};

/** The same as it is written on the command line. */
struct RawRecipeFileOptions {
    int count = host::RecipePrograms;
    std::string file, picture;
    bool steps = false;
    bool ascii = false;

    RecipeFileOptions understood() const;
};

/** Adds "check" and "show" to the commands of "recipe". */
void addRecipeFileCommands(CLI::App& recipe, RawRecipeFileOptions& raw);

#endif
