#include "apps/dmc50ctl/options.h"

#include "host/project/limits.h"
#include "host/project/spelling.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <map>

using namespace host;

namespace {

const char Description[] =
    "Reads and writes the values of DMC50 controllers through the panel's driver:\n"
    "the tags of a panel project, or plain addresses on a port.";

const char Footer[] =
    "\nAddresses: PA0011000, NA2016, NA2016.4 (bit 4), 2-NA2016 (station 2); with :TYPE and\n"
    ":COUNT behind where it is not one dword: PA0011000:int16, NA1000:dword:24.\n"
    "\nExamples:\n"
    "  dmc50ctl --port /dev/ttyUSB0 --station 1 read PA0011000 NA2016\n"
    "  dmc50ctl --project examples/furnace watch\n"
    "  dmc50ctl --project examples/furnace write \"Zone 1 set point=850\"\n"
    "  dmc50ctl project new furnace && dmc50ctl project build furnace\n"
    "\nExit status: 0 done, 1 communication or file error, 2 bad usage, 130 interrupted.";

/** The command line as it is written, before it is understood. */
struct RawOptions {
    std::vector<std::string> items;
    std::string project, port, format, plugin, trace, directory, output;
    std::optional<int> station, baud, data_bits, stop_bits, parity, timeout, retries, delay;
    double interval_s = 1;
    int rounds = 0;
    bool no_care = false;
    bool json = false;
    bool no_check = false;
    RawRecipeOptions recipe;
    RawRecipeFileOptions recipe_file;
};

CLI::Validator inRange(const Range& range) {
    return CLI::Range(range.least, range.most).description("");
}

void addTargetOptions(CLI::App& app, RawOptions& raw) {
    app.add_option("--project", raw.project,
                   "Folder of a panel project, or a built panel directory")
        ->type_name("DIR");
    app.add_option("--port", raw.port,
                   "Serial device, pty or tcp://host:port; in place of the project's")
        ->type_name("PORT");
    app.add_option("--station", raw.station, "Station of plain addresses (default 1)")
        ->type_name("N")
        ->check(inRange(StationRange));
    app.add_option("--plugin", raw.plugin, "The driver, libdmc50v3.so (default: looked for)")
        ->type_name("PATH");
}

void addLineOptions(CLI::App& app, RawOptions& raw) {
    const std::map<std::string, int> parities = {{"none", DeviceSetting::NoParity},
                                                 {"odd", DeviceSetting::OddParity},
                                                 {"even", DeviceSetting::EvenParity}};
    app.add_option("--baud", raw.baud, "Speed of a serial device")
        ->type_name("N")
        ->check(inRange(BaudRange));
    app.add_option("--parity", raw.parity, "none, odd or even")
        ->type_name("PARITY")
        ->transform(CLI::CheckedTransformer(parities).description(""));
    app.add_option("--databits", raw.data_bits, "7 or 8")
        ->type_name("N")
        ->check(inRange(DataBitsRange));
    app.add_option("--stopbits", raw.stop_bits, "1 or 2")
        ->type_name("N")
        ->check(inRange(StopBitsRange));
    app.add_option("--timeout", raw.timeout, "How long a controller may take to answer")
        ->type_name("MS")
        ->check(inRange(TimeoutRange));
    app.add_option("--retries", raw.retries, "Further attempts after a failure")
        ->type_name("N")
        ->check(inRange(RetryRange));
    app.add_option("--delay", raw.delay, "Pause before each request")
        ->type_name("MS")
        ->check(inRange(DelayRange));
    app.add_flag("--no-care", raw.no_care,
                 "Wait the whole timeout for every station, judge no reply");
}

void addOutputOptions(CLI::App& app, RawOptions& raw) {
    app.add_option("--format", raw.format, "Show values as hex, dec, bits or float")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"hex", "dec", "bits", "float"}).description(""));
    app.add_flag("--json", raw.json, "Print JSON instead of a table");
    app.add_option("--trace", raw.trace, "Write every frame to FILE")->type_name("FILE");
}

void addAccessCommands(CLI::App& app, RawOptions& raw) {
    CLI::App* const read = app.add_subcommand("read", "Show values once");
    read->add_option("tags", raw.items, "Tags or addresses; none: all of the project");
    CLI::App* const write = app.add_subcommand("write", "Set values, and check that they arrived");
    write->add_option("assignments", raw.items, "TAG=VALUE, several elements as 1,2,3")->required();
    write->add_flag("--no-check", raw.no_check,
                    "Do not mind when a controller then shows another value");
    CLI::App* const watch = app.add_subcommand("watch", "Show values again and again");
    watch->add_option("tags", raw.items, "Tags or addresses; none: all of the project");
    watch->add_option("--interval", raw.interval_s, "Seconds between two rounds (default 1)")
        ->type_name("S")
        ->check(CLI::Range(0.05, 3600.0).description(""));
    watch->add_option("--count", raw.rounds, "End after N rounds")
        ->type_name("N")
        ->check(inRange({1, 1000000000}));
    CLI::App* const info = app.add_subcommand("info", "Tell about the driver and the project");
    for (CLI::App* command : {read, write, watch, info})
        command->fallthrough();
}

void addProjectCommands(CLI::App& app, RawOptions& raw) {
    CLI::App* const project = app.add_subcommand("project", "Make panel projects");
    project->require_subcommand(1);
    CLI::App* const build = project->add_subcommand(
        "build", "Check DIR/panel.toml and make the panel directory that the driver runs on");
    build->add_option("directory", raw.directory, "The project's folder")->required();
    build->add_option("-o,--output", raw.output, "The panel directory (default DIR/panel)")
        ->type_name("OUT");
    CLI::App* const fresh = project->add_subcommand("new", "Write a commented sample project");
    fresh->add_option("directory", raw.directory, "The folder for panel.toml")->required();
}

Options::Command recipeCommandOf(const CLI::App& recipe) {
    if (recipe.got_subcommand("check"))
        return Options::Command::RecipeCheck;
    if (recipe.got_subcommand("show"))
        return Options::Command::RecipeShow;
    if (recipe.got_subcommand("push"))
        return Options::Command::RecipePush;
    return recipe.got_subcommand("template") ? Options::Command::RecipeTemplate
                                             : Options::Command::RecipePull;
}

Options::Command commandOf(const CLI::App& app) {
    if (app.got_subcommand("recipe"))
        return recipeCommandOf(*app.get_subcommand("recipe"));
    if (app.got_subcommand("project"))
        return app.get_subcommand("project")->got_subcommand("new")
                   ? Options::Command::ProjectNew
                   : Options::Command::ProjectBuild;
    if (app.got_subcommand("read"))
        return Options::Command::Read;
    if (app.got_subcommand("write"))
        return Options::Command::Write;
    return app.got_subcommand("watch") ? Options::Command::Watch : Options::Command::Info;
}

Options understood(const RawOptions& raw, Options::Command command) {
    Options options;
    options.command = command;
    for (const std::string& item : raw.items)
        options.items.append(QString::fromStdString(item));
    options.project_directory = QString::fromStdString(raw.project);
    options.port = QString::fromStdString(raw.port);
    options.station = raw.station;
    options.baud = raw.baud;
    options.data_bits = raw.data_bits;
    options.stop_bits = raw.stop_bits;
    options.parity = raw.parity;
    options.timeout_ms = raw.timeout;
    options.retries = raw.retries;
    options.delay_ms = raw.delay;
    options.no_care = raw.no_care;
    options.format =
        valueFormatByName(QString::fromStdString(raw.format)).value_or(ValueFormat::Natural);
    options.json = raw.json;
    options.must_read_back = !raw.no_check;
    options.interval_ms = int(raw.interval_s * 1000);
    options.rounds = raw.rounds;
    options.plugin = QString::fromStdString(raw.plugin);
    options.trace_file = QString::fromStdString(raw.trace);
    options.directory = QString::fromStdString(raw.directory);
    options.output = QString::fromStdString(raw.output);
    options.recipe = raw.recipe.understood();
    options.recipe_file = raw.recipe_file.understood();
    return options;
}

/** Whether the parts of the command line go together. */
void checkUsage(const Options& options) {
    if (options.needsLine() && options.project_directory.isEmpty() && options.port.isEmpty())
        throw CLI::ValidationError("--project DIR or --port PORT is needed");
    if (options.isAccess() && options.project_directory.isEmpty() && options.items.isEmpty())
        throw CLI::ValidationError("name the addresses, such as PA0011000");
    if (options.station && !options.project_directory.isEmpty())
        throw CLI::ValidationError(
            "--station is for plain addresses; a project knows its stations");
}

int exitStatus(const CLI::App& app, const CLI::ParseError& error) {
    return app.exit(error) == 0 ? ExitOk : ExitUsage;
}

/** A misspelt command is left over as an argument while the command is missing. */
bool unknownCommand(const CLI::App& app) {
    const std::vector<std::string> left_over = app.remaining();
    if (left_over.empty() || !app.get_subcommands().empty())
        return false;
    const QString word = QString::fromStdString(left_over.front());
    const QStringList commands = {QStringLiteral("read"),    QStringLiteral("write"),
                                  QStringLiteral("watch"),   QStringLiteral("info"),
                                  QStringLiteral("project"), QStringLiteral("recipe")};
    const QString hint = spellingHint(word, commands);
    std::fprintf(stderr, "dmc50ctl: there is no command '%s'%s\n", qPrintable(word),
                 qPrintable(hint));
    return true;
}

} // namespace

ParsedOptions parseOptions(int argc, const char* const* argv) {
    CLI::App app{Description, "dmc50ctl"};
    app.footer(Footer);
    app.require_subcommand(1);
    RawOptions raw;
    addTargetOptions(app, raw);
    addLineOptions(app, raw);
    addOutputOptions(app, raw);
    addAccessCommands(app, raw);
    addProjectCommands(app, raw);
    addRecipeFileCommands(*addRecipeCommands(app, raw.recipe), raw.recipe_file);
    try {
        app.parse(argc, argv);
        const Options options = understood(raw, commandOf(app));
        checkUsage(options);
        return {options, std::nullopt};
    } catch (const CLI::RequiredError& error) {
        return {{}, unknownCommand(app) ? ExitUsage : exitStatus(app, error)};
    } catch (const CLI::ParseError& error) {
        return {{}, exitStatus(app, error)};
    }
}
