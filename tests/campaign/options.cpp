#include "tests/campaign/options.h"

#include <CLI/CLI.hpp>

namespace campaign {

namespace {

constexpr int UsageExitStatus = 2;
constexpr int DefaultMinutes = 2;

const char Description[] =
    "Plays the driver and the host's port against simulated controllers on a line with faults,\n"
    "in virtual time, and judges every value, write, error text and wait; docs/campaign.md says\n"
    "how. The same seed gives the same run. Without --exchanges and --minutes: 2 minutes.";

const char Footer[] = "\nExit status: 0 all was well, 1 something was wrong, 2 bad usage.";

} // namespace

std::optional<Options> parseOptions(int argc, char** argv, int& exit_status) {
    Options options;
    std::string replay, output, trace;
    CLI::App app(Description, "campaign");
    app.footer(Footer);
    app.add_option("--seed", options.seed, "Of the first run; each later one has the next");
    app.add_option("--exchanges", options.exchanges, "End after so many requests of the driver");
    app.add_option("--minutes", options.minutes, "End after so much real time");
    app.add_option("--jobs", options.jobs, "Processes side by side")->check(CLI::Range(1, 64));
    app.add_flag("--shrink", options.shrink,
                 "Look for the fewest faults that make the first wrong run fail");
    app.add_option("--output", output, "Where --shrink writes them")->type_name("FILE");
    app.add_option("--replay", replay, "Play only what such a file holds")->type_name("FILE");
    app.add_option("--trace", trace, "Write all that passes over the line")->type_name("FILE");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        exit_status = app.exit(error) == 0 ? 0 : UsageExitStatus;
        return std::nullopt;
    }
    options.replay = QString::fromStdString(replay);
    options.output = QString::fromStdString(output);
    options.trace = QString::fromStdString(trace);
    if (options.exchanges == 0 && options.minutes == 0)
        options.minutes = DefaultMinutes;
    return options;
}

} // namespace campaign
