#ifndef APPS_DMC50SIM_OPTIONS_H
#define APPS_DMC50SIM_OPTIONS_H

#include "simulator/line.h"
#include "simulator/movingspec.h"

#include <optional>

/** What the command line asks for, checked and complete. */
struct Options {
    enum class Transport { Pty, Tcp, Device };
    Transport transport = Transport::Pty;
    QString link; // of a pty
    QString host; // of TCP
    quint16 port = 0;
    QString device;
    int device_baud = 0;

    simulator::LineSettings line; // without trace and log
    std::vector<simulator::MovingSpec> moving;
    QString memory_file; // to load; empty: none
    QString save_file;   // to write at the end; empty: none
    QString log_file;    // "-" is the standard output; empty: no log
    QString trace_file;  // empty: none
};

/** The outcome of reading the command line. */
struct ParsedOptions {
    Options options;
    std::optional<int> exit_status; // set when the program must end now
};

/** Reads the command line. Shows help, and errors on the standard error. */
ParsedOptions parseOptions(int argc, const char* const* argv);

#endif
