#include "tests/campaign/runner.h"

#include "tests/campaign/report.h"
#include "tests/campaign/shrink.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

namespace campaign {

namespace {

constexpr quint64 RunExchanges = 10000; // of one run
constexpr quint64 WarmUpRuns = 3;       // until all that is made once is there
constexpr qint64 MostGrowthBytes = 1000000;

using SteadyClock = std::chrono::steady_clock;

/** What one process plays: every jobs-th run, beginning with its own number. */
class Job {
public:
    Job(const Options& options, int number) : m_options(options), m_number(number) {}

    JobResult play();

private:
    bool isOver() const;
    quint64 exchangesOf(quint64 run) const;
    void playRun(quint64 run);
    QString growth();
    void shrink(quint64 seed, quint64 exchanges);

    const Options& m_options;
    const int m_number;
    const SteadyClock::time_point m_began = SteadyClock::now();
    JobResult m_result;
    qint64 m_first_heap = 0; // bytes in use after the warm-up
};

JobResult Job::play() {
    for (quint64 run = quint64(m_number); !isOver() && exchangesOf(run) > 0;
         run += quint64(m_options.jobs))
        playRun(run);
    return m_result;
}

bool Job::isOver() const {
    const auto most = std::chrono::minutes(m_options.minutes);
    return m_result.wrong || (m_options.minutes > 0 && SteadyClock::now() - m_began >= most);
}

quint64 Job::exchangesOf(quint64 run) const {
    if (m_options.exchanges == 0)
        return RunExchanges;
    const quint64 before = run * RunExchanges;
    return before >= m_options.exchanges ? 0 : std::min(RunExchanges, m_options.exchanges - before);
}

void Job::playRun(quint64 run) {
    const quint64 seed = m_options.seed + run;
    const quint64 exchanges = exchangesOf(run);
    announceRun(seed, exchanges);
    Outcome outcome = campaign::play(regressionOf(seed, exchanges));
    m_result.figures += outcome.figures;
    if (outcome.failure.isEmpty())
        outcome.failure = growth();
    if (outcome.failure.isEmpty())
        return;
    m_result.wrong = true;
    std::fputs(qPrintable(failureText(seed, exchanges, outcome)), stderr);
    if (m_options.shrink)
        shrink(seed, exchanges);
}

/** What is wrong with the memory in use after a run. */
QString Job::growth() {
    const qint64 heap = qint64(mallinfo2().uordblks);
    if (m_result.figures.runs <= WarmUpRuns)
        m_first_heap = heap;
    if (heap - m_first_heap <= MostGrowthBytes)
        return QString();
    return QString::fromLatin1("memory has grown by %1 bytes").arg(heap - m_first_heap);
}

void Job::shrink(quint64 seed, quint64 exchanges) {
    const Regression least = shrunk(regressionOf(seed, exchanges));
    const QString file = m_options.output.isEmpty()
                             ? QString::fromLatin1("tests/regressions/seed-%1.campaign").arg(seed)
                             : m_options.output;
    const Result<void> saved = saveRegression(least, file);
    std::fprintf(stderr, "%s\n",
                 qPrintable(saved ? QString::fromLatin1("%1 faults left, in %2; play them with: "
                                                        "./campaign --replay %2")
                                        .arg(least.faults.size())
                                        .arg(file)
                                  : saved.error()));
}

/** In a process of its own; its result comes through the pipe. */
void playInChild(const Options& options, int number, int pipe) {
    int argc = 1;
    char name[] = "campaign";
    char* argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    const JobResult result = Job(options, number).play();
    const bool told = write(pipe, &result, sizeof result) == ssize_t(sizeof result);
    std::fflush(nullptr);
    _exit(told ? 0 : 1);
}

/** A child that died tells nothing. */
JobResult resultFrom(int pipe) {
    JobResult result;
    if (read(pipe, &result, sizeof result) != ssize_t(sizeof result))
        result = {Figures(), true};
    close(pipe);
    return result;
}

} // namespace

JobResult playAll(const Options& options) {
    std::vector<int> pipes;
    for (int number = 0; number < options.jobs; ++number) {
        int ends[2] = {-1, -1};
        if (pipe(ends) != 0 || fflush(nullptr) != 0)
            return {Figures(), true};
        if (fork() == 0)
            playInChild(options, number, ends[1]);
        close(ends[1]);
        pipes.push_back(ends[0]);
    }
    JobResult all;
    for (int pipe : pipes) {
        const JobResult result = resultFrom(pipe);
        all.figures += result.figures;
        all.wrong = all.wrong || result.wrong;
    }
    while (wait(nullptr) > 0) {
    }
    return all;
}

} // namespace campaign
