#ifndef TESTS_CAMPAIGN_FIGURES_H
#define TESTS_CAMPAIGN_FIGURES_H

#include "tests/campaign/linefault.h"

#include <array>

namespace campaign {

/** What runs have done and seen. Plain numbers: processes hand them on as bytes. */
struct Figures {
    quint64 runs = 0;
    quint64 exchanges = 0; // requests of the driver
    quint64 sent = 0;      // requests on the line
    quint64 good_reads = 0;
    quint64 values = 0;           // in good reads, each compared with its controller
    quint64 failed_exchanges = 0; // each with a text that names a fault
    quint64 writes_confirmed = 0; // double words
    quint64 writes_failed = 0;
    quint64 writes_refused = 0;
    quint64 writes_repeated = 0; // applied more than once, with the same value
    quint64 caller_reads = 0;
    quint64 caller_reads_failed = 0;
    quint64 hasty_reads = 0; // given up at once on a line that did not fail
    quint64 left_behind = 0; // values fetched for an earlier read that had given up
    quint64 sessions = 0;
    quint64 undetectable = 0;    // exchanges with a fault that no check of the protocol can see
    quint64 late_recoveries = 0; // took longer than a probe interval and a cycle
    qint64 longest_read_ms = 0;
    qint64 longest_recovery_ms = 0; // from the end of the faults until all was fresh
    qint64 virtual_ms = 0;
    quint64 digest = 0;
    std::array<quint64, FaultKinds> faults = {};

    Figures& operator+=(const Figures& other);
};

} // namespace campaign

#endif
