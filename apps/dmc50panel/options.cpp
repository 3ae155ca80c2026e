#include "apps/dmc50panel/options.h"

#include "apps/dmc50panel/view.h"

#include <CLI/CLI.hpp>

namespace {

constexpr int UsageExitStatus = 2;

const char Description[] = "Shows a part of the operator panel in a window on this PC.";

std::string viewHelp() {
    std::string help = "What to show:";
    for (const ViewKind& kind : viewKinds())
        help += std::string("\n") + kind.name + ": " + kind.purpose;
    return help;
}

std::vector<std::string> viewNames() {
    std::vector<std::string> names;
    for (const ViewKind& kind : viewKinds())
        names.emplace_back(kind.name);
    return names;
}

} // namespace

ParsedOptions parseOptions(int argc, const char* const* argv) {
    CLI::App app(Description, "dmc50panel");
    ParsedOptions parsed;
    std::string screenshot_file;
    app.footer("\nExit status: 0 ended on request, 1 the picture was not written, 2 bad usage.");
    app.add_option("--show", parsed.options.view, viewHelp())
        ->type_name("VIEW")
        ->required()
        ->check(CLI::IsMember(viewNames()).description(""));
    app.add_option("--edge", parsed.options.edge,
                   "The message panel pops up above its bar (0, the default), below it (1), on "
                   "its right (2) or on its left (3)")
        ->type_name("N")
        ->check(CLI::Range(0, 3).description(""));
    app.add_option("--screenshot", screenshot_file,
                   "Write a picture to FILE (.png or .jpg) once there is something to see, and end")
        ->type_name("FILE");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        parsed.exit_status = app.exit(error) == 0 ? 0 : UsageExitStatus;
    }
    parsed.options.screenshot_file = QString::fromLocal8Bit(screenshot_file.c_str());
    return parsed;
}
