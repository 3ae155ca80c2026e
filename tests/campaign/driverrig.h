#ifndef TESTS_CAMPAIGN_DRIVERRIG_H
#define TESTS_CAMPAIGN_DRIVERRIG_H

#include "host/line/hostport.h"
#include "tests/campaign/exchangecheck.h"
#include "tests/support/testproject.h"
#include "tests/unit/dmc50v3/driverprobe.h"

namespace campaign {

/** The driver's polling thread, whose loop runs where it is called. */
class LoopedThread : public PollingThread {
public:
    using PollingThread::PollingThread;
    void loop() { run(); }
};

/** The real driver with its project's database, on the host's real port, on the
 *  virtual line. */
class DriverRig {
public:
    DriverRig(const Scenario& scenario, VirtualTime& time, VirtualLine& line,
              ExchangeWatcher& watcher);

    DriverDMC50v3& driver() { return m_driver; }
    DriverProbe& probe() { return m_probe; }
    LoopedThread& thread() { return *m_thread; }
    WatchedPort& port() { return m_port; }

    /** The longest that the driver lets a caller wait for the line, ms. */
    qint64 waitBudgetMsecs() { return LinkSettings(m_port).waitBudgetMsecs(); }

private:
    TestProject m_project;
    host::HostPort m_host_port;
    WatchedPort m_port;
    DriverDMC50v3 m_driver;
    DriverProbe m_probe;
    LoopedThread* const m_thread; // the driver's
};

} // namespace campaign

#endif
