#ifndef TESTS_CAMPAIGN_SCENARIO_H
#define TESTS_CAMPAIGN_SCENARIO_H

#include "tests/campaign/linefault.h"

#include <QStringList>

#include <map>
#include <set>
#include <vector>

namespace campaign {

/** Neighbouring double words of one station. */
struct Block {
    quint8 station;
    quint32 first;
    int count; // 1 to 40
};

/** What one run plays: its panel project, its line and its faults, all of them made
 *  from one seed. */
struct Scenario {
    quint64 seed = 0;
    std::vector<quint8> stations; // 1 to 31 of them
    std::vector<Block> blocks;    // all tags, 1 to 1000
    std::set<quint8> low_latency;
    int baud = 38400;
    int timeout_ms = 3000;
    int retries = 1;
    int frame_interval_ms = 20;
    int turnaround_ms = 5;
    FaultScript faults;

    /** The tags as the project's database has them. */
    QStringList tags() const;
};

/** Faults fall on the first @p requests requests. */
Scenario makeScenario(quint64 seed, int requests);

} // namespace campaign

#endif
