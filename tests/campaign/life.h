#ifndef TESTS_CAMPAIGN_LIFE_H
#define TESTS_CAMPAIGN_LIFE_H

#include "tests/campaign/caller.h"

namespace campaign {

/** How a run ended. */
struct Outcome {
    QString failure;  // empty: none
    quint64 step = 0; // exchanges of the driver until then
    QStringList last; // the last pieces on the line until then
    Figures figures;
};

/** One run of a scenario from its start, through its faults, to the quiet end at which
 *  all must be fresh again. */
class Life {
public:
    Life(const Scenario& scenario, quint64 exchanges);

    Outcome run();

private:
    void supervise();
    bool awaitExchanges();
    void awaitRecovery();
    QString whatIsLeft(qint64 since);
    void readEverything();
    qint64 cycleUsecs() const;
    void stir();
    void noteFailure();

    const Scenario& m_scenario;
    const quint64 m_exchanges; // of the driver, with faults
    VirtualTime m_time;
    Verdict m_verdict;
    Figures m_figures;
    TagBook m_tags;
    WriteBook m_writes;
    VirtualLine m_line;
    ExchangeCheck m_check;
    DriverRig m_rig;
    SessionKeeper m_sessions;
    CallersWorld m_world;
    Caller m_host;
    Caller m_transfer;
    bool m_ended = false;
    Outcome m_outcome;
};

} // namespace campaign

#endif
