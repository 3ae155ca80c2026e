// The campaign; see docs/campaign.md.
#include "tests/campaign/report.h"
#include "tests/campaign/runner.h"

#include "tests/campaign/regression.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>

namespace {

using namespace campaign;

int replay(int argc, char** argv, const QString& file) {
    const QCoreApplication application(argc, argv);
    const Result<Regression> regression = loadRegression(file);
    if (!regression) {
        std::fprintf(stderr, "%s\n", qPrintable(regression.error()));
        return 2;
    }
    const Outcome outcome = play(*regression);
    std::fputs(qPrintable(reportText(outcome.figures, 1)), stdout);
    if (outcome.failure.isEmpty())
        return 0;
    std::fputs(qPrintable(failureText(regression->seed, regression->exchanges, outcome)), stderr);
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    int exit_status = 0;
    const std::optional<Options> options = parseOptions(argc, argv, exit_status);
    if (!options)
        return exit_status;
    if (!options->trace.isEmpty())
        Journal::traceTo(std::fopen(qPrintable(options->trace), "w"));
    if (!options->replay.isEmpty())
        return replay(argc, argv, options->replay);
    QElapsedTimer clock;
    clock.start();
    const JobResult result = playAll(*options);
    std::fputs(qPrintable(reportText(result.figures, double(clock.elapsed()) / 1000)), stdout);
    return result.wrong ? 1 : 0;
}
