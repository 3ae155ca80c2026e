#ifndef TESTS_CAMPAIGN_REPORT_H
#define TESTS_CAMPAIGN_REPORT_H

#include "tests/campaign/life.h"

namespace campaign {

/** The figures of all runs, for people; @p seconds of real time. */
QString reportText(const Figures& figures, double seconds);

/** What is wrong with a run and how it is run again. */
QString failureText(quint64 seed, quint64 exchanges, const Outcome& outcome);

/** From here on a crash or a run without an end prints the command that runs this one
 *  again. */
void announceRun(quint64 seed, quint64 exchanges);

} // namespace campaign

#endif
