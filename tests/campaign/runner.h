#ifndef TESTS_CAMPAIGN_RUNNER_H
#define TESTS_CAMPAIGN_RUNNER_H

#include "tests/campaign/figures.h"
#include "tests/campaign/options.h"

namespace campaign {

/** How the runs of one process, or of all, ended. */
struct JobResult {
    Figures figures;
    bool wrong = false;
};

/** Plays runs as @p options say in that many processes; prints what is wrong with the
 *  first wrong run of each. */
JobResult playAll(const Options& options);

} // namespace campaign

#endif
