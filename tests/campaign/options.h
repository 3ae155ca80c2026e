#ifndef TESTS_CAMPAIGN_OPTIONS_H
#define TESTS_CAMPAIGN_OPTIONS_H

#include <QString>

#include <optional>

namespace campaign {

struct Options {
    quint64 seed = 1;
    quint64 exchanges = 0; // of the driver, of all runs; 0: no limit
    int minutes = 0;       // of real time; 0: no limit
    int jobs = 1;          // processes side by side
    bool shrink = false;
    QString replay; // a regression file; empty: none
    QString trace;  // a file for all that passes over the line; empty: none
    QString output; // where a shrunk script goes
};

/** Reads the command line. Nothing when the program shall end, with @p exit_status. */
std::optional<Options> parseOptions(int argc, char** argv, int& exit_status);

} // namespace campaign

#endif
