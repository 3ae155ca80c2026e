#ifndef APPS_DMC50PANEL_OPTIONS_H
#define APPS_DMC50PANEL_OPTIONS_H

#include <QString>

#include <optional>
#include <string>

/** What the command line asks for, checked and complete. */
struct Options {
    std::string view;
    int edge = 0;            // the docking side of the message panel
    QString screenshot_file; // empty: stay open
};

/** The outcome of reading the command line. */
struct ParsedOptions {
    Options options;
    std::optional<int> exit_status; // set when the program must end now
};

/** Reads the command line. Shows help, and errors on the standard error. */
ParsedOptions parseOptions(int argc, const char* const* argv);

#endif
