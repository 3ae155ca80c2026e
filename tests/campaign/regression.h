#ifndef TESTS_CAMPAIGN_REGRESSION_H
#define TESTS_CAMPAIGN_REGRESSION_H

#include "common/result.h"
#include "tests/campaign/life.h"

namespace campaign {

/** A run with a fault script of its own:
 *
 *      # what was wrong then
 *      seed 17
 *      exchanges 900
 *      12 late ms=400 at=0 value=0
 */
struct Regression {
    QString comment;
    quint64 seed = 1;
    quint64 exchanges = 0;
    FaultScript faults;
};

Result<Regression> loadRegression(const QString& file_name);
Result<void> saveRegression(const Regression& regression, const QString& file_name);

Outcome play(const Regression& regression);

/** The faults of @p seed and what they do in a run of @p exchanges. */
Regression regressionOf(quint64 seed, quint64 exchanges);

} // namespace campaign

#endif
