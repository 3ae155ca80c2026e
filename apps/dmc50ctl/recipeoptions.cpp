#include "apps/dmc50ctl/recipeoptions.h"

#include "host/recipe/recipeformat.h"

#include <CLI/CLI.hpp>

using namespace host;

namespace {

constexpr int LargestProgramId = 99999;

const char Footer[] =
    "\nThe files are the driver's own: PROG_ID.txt, on a push also PROG_ID_anything.txt.\n"
    "docs/recipes.md tells how to edit them.\n"
    "\nExamples:\n"
    "  dmc50ctl --port /dev/ttyUSB0 --station 1 recipe pull 7 --stick ~/furnace\n"
    "  dmc50ctl --project examples/furnace recipe push 7 --stick ~/furnace\n"
    "  dmc50ctl recipe template --count 4 --stick ~/furnace";

void addCommonOptions(CLI::App& command, RawRecipeOptions& raw) {
    command.add_option("--count", raw.count, "Programs to transfer, from the first (default 32)")
        ->type_name("N")
        ->check(CLI::Range(1, RecipePrograms).description(""));
    command
        .add_option("--stick", raw.stick,
                    "Use the folder DIR as the USB stick (default: the one that is mounted)")
        ->type_name("DIR");
    command.fallthrough();
}

void addTransferOptions(CLI::App& command, RawRecipeOptions& raw) {
    command.add_option("id", raw.program_id, "Number of the file: 7 is PROG_7.txt")
        ->required()
        ->check(CLI::Range(0, LargestProgramId).description(""));
    command.add_option("--link", raw.link, "Link of a project where several have programs")
        ->type_name("NAME");
}

} // namespace

RecipeOptions RawRecipeOptions::understood() const {
    RecipeOptions options;
    options.program_id = program_id;
    options.count = count;
    options.stick = QString::fromStdString(stick);
    options.file = QString::fromStdString(file);
    options.link = QString::fromStdString(link);
    options.ignore_labels = ignore_labels;
    return options;
}

CLI::App* addRecipeCommands(CLI::App& app, RawRecipeOptions& raw) {
    CLI::App* const recipe =
        app.add_subcommand("recipe", "Move programs between a controller and files");
    recipe->require_subcommand(1);
    recipe->fallthrough();
    recipe->footer(Footer);
    CLI::App* const pull = recipe->add_subcommand("pull", "Controller to file");
    addTransferOptions(*pull, raw);
    addCommonOptions(*pull, raw);
    CLI::App* const push = recipe->add_subcommand("push", "File to controller, and check it");
    addTransferOptions(*push, raw);
    addCommonOptions(*push, raw);
    push->add_option("--file", raw.file, "The file to take where several match")->type_name("NAME");
    push->add_flag("--ignore-labels", raw.ignore_labels,
                   "Write rows that are labelled for other programs, too");
    addCommonOptions(*recipe->add_subcommand("template", "A blank file; needs no controller"), raw);
    return recipe;
}
