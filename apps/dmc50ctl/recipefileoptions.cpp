#include "apps/dmc50ctl/recipefileoptions.h"

#include <CLI/CLI.hpp>

using namespace host;

namespace {

void addFile(CLI::App& command, RawRecipeFileOptions& raw) {
    command.add_option("file", raw.file, "A program file, such as PROG_7.txt")->required();
    command.fallthrough();
}

} // namespace

RecipeFileOptions RawRecipeFileOptions::understood() const {
    RecipeFileOptions options;
    options.file = QString::fromStdString(file);
    options.count = count;
    options.picture = QString::fromStdString(picture);
    options.steps = steps;
    options.ascii = ascii;
    return options;
}

void addRecipeFileCommands(CLI::App& recipe, RawRecipeFileOptions& raw) {
    CLI::App* const check =
        recipe.add_subcommand("check", "List what is wrong with a file, without a controller");
    addFile(*check, raw);
    check
        ->add_option("--count", raw.count,
                     "Programs that are to be transferred, all 32 by default: fewer in the "
                     "file are a finding")
        ->type_name("N")
        ->check(CLI::Range(1, RecipePrograms).description(""));

    CLI::App* const show =
        recipe.add_subcommand("show", "Show a file's programs and the course of temperature");
    addFile(*show, raw);
    show->add_option("--png", raw.picture, "Draw the course into a picture, too")->type_name("OUT");
    show->add_flag("--steps", raw.steps, "Draw steps of temperature instead of ramps");
    show->add_flag("--ascii", raw.ascii, "Draw with plain characters");
}
