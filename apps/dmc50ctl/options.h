#ifndef APPS_DMC50CTL_OPTIONS_H
#define APPS_DMC50CTL_OPTIONS_H

#include "apps/dmc50ctl/recipefileoptions.h"
#include "apps/dmc50ctl/recipeoptions.h"
#include "host/session/tagvalue.h"

#include <QStringList>

#include <optional>

enum ExitStatus {
    ExitOk = 0,
    ExitCommunication = 1, // or anything else that went wrong outside the command line
    ExitUsage = 2,
    ExitInterrupted = 130 // as shells have it: 128 and SIGINT
};

/** What the command line asks for. */
struct Options {
    enum class Command {
        Read,
        Write,
        Watch,
        Info,
        ProjectBuild,
        ProjectNew,
        RecipePull,
        RecipePush,
        RecipeTemplate,
        RecipeCheck,
        RecipeShow
    };
    Command command = Command::Info;
    QStringList items; // tag names and addresses; "name=value" to write

    QString project_directory; // empty: plain addresses
    QString port;              // empty: the project's
    std::optional<int> station;
    std::optional<int> baud, data_bits, stop_bits, parity; // parity: DeviceSetting::ParityCode
    std::optional<int> timeout_ms, retries, delay_ms;
    bool no_care = false;

    host::ValueFormat format = host::ValueFormat::Natural;
    bool json = false;
    bool must_read_back = true;
    int interval_ms = 1000;
    int rounds = 0; // of watch; 0: until Ctrl-C
    QString plugin; // empty: looked for
    QString trace_file;

    QString directory; // of the project commands
    QString output;
    RecipeOptions recipe;
    RecipeFileOptions recipe_file;

    bool isAccess() const {
        return command == Command::Read || command == Command::Write || command == Command::Watch;
    }
    bool isTransfer() const {
        return command == Command::RecipePull || command == Command::RecipePush ||
               command == Command::RecipeTemplate;
    }
    bool needsLine() const {
        return isAccess() || (isTransfer() && command != Command::RecipeTemplate);
    }
    bool needsTarget() const {
        return isAccess() || isTransfer() ||
               (command == Command::Info && !project_directory.isEmpty());
    }
};

/** The outcome of reading the command line. */
struct ParsedOptions {
    Options options;
    std::optional<int> exit_status; // set when the program must end now
};

/** Reads the command line. Shows help, and errors on the standard error. */
ParsedOptions parseOptions(int argc, const char* const* argv);

#endif
