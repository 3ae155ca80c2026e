#ifndef APPS_DMC50SIM_CONTROL_H
#define APPS_DMC50SIM_CONTROL_H

#include "simulator/lineconsole.h"

/** SIGINT and SIGTERM as a readable file. Made before the first thread, so that
 *  no thread is interrupted by them. */
class EndSignals {
public:
    EndSignals();
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    /** Readable once one of the signals has come. */
    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

/** Carries out the commands of the standard input until "quit" or a signal. The
 *  end of the input alone ends nothing: the program may run without a terminal. */
void controlLine(simulator::LineConsole& console, const EndSignals& end_signals);

#endif
