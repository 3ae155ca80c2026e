#ifndef APPS_DMC50CTL_RECIPEOPTIONS_H
#define APPS_DMC50CTL_RECIPEOPTIONS_H

#include <QString>

#include <string>

namespace CLI {
class App;
}

/** What the recipe commands are asked for. */
struct RecipeOptions {
    int program_id = 0; // number in the files' names
    int count = 32;     // programs to transfer
    QString stick;      // a folder in place of a USB stick; empty: the stick that is mounted
    QString file;       // of push: the one to take where several match
    QString link;       // of the project; empty: the only one with programs
    bool ignore_labels = false;
};

/** The same as it is written on the command line. */
struct RawRecipeOptions {
    int program_id = 0;
    int count = 32;
    std::string stick, file, link;
    bool ignore_labels = false;

    RecipeOptions understood() const;
};

/** Adds "recipe" and the commands of the transfer to the program's; returns it. */
CLI::App* addRecipeCommands(CLI::App& app, RawRecipeOptions& raw);

#endif
