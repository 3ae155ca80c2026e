#ifndef TESTS_CAMPAIGN_SHRINK_H
#define TESTS_CAMPAIGN_SHRINK_H

#include "tests/campaign/regression.h"

namespace campaign {

/** Leaves out of @p wrong, a run that fails, all faults without which it still fails
 *  in some way, and the exchanges after that. */
Regression shrunk(const Regression& wrong);

} // namespace campaign

#endif
