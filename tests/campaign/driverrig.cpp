#include "tests/campaign/driverrig.h"

#include "tests/campaign/virtualchannel.h"

namespace campaign {

namespace {

DeviceSetting deviceOf(const Scenario& scenario) {
    return DeviceSetting(DEVICE_RS485, QStringLiteral("COM2"), scenario.baud, 8,
                         DeviceSetting::OneStopBit, DeviceSetting::EvenParity);
}

DriverSetting settingsOf(const Scenario& scenario) {
    return DriverSetting(scenario.timeout_ms, scenario.retries, scenario.stations.front(),
                         scenario.frame_interval_ms);
}

void ignoreLog(const QString&) {}

host::PortOptions optionsOf(VirtualTime& time) {
    host::PortOptions options;
    options.clock = &time;
    options.usecs = [&time] { return time.now(); };
    return options;
}

} // namespace

DriverRig::DriverRig(const Scenario& scenario, VirtualTime& time, VirtualLine& line,
                     ExchangeWatcher& watcher)
    : m_host_port(std::make_unique<VirtualChannel>(line, time), deviceOf(scenario),
                  settingsOf(scenario), ignoreLog, optionsOf(time))
    , m_port(m_host_port, time, watcher)
    , m_driver(time)
    , m_probe(m_driver)
    , m_thread(
          new LoopedThread(&m_port, &m_probe.validAddresses(), scenario.stations.front(), time)) {
    m_project.create(scenario.stations.front(), scenario.tags());
    if (!m_driver.readDB(QStringLiteral("COM2")))
        qFatal("the campaign's project cannot be read");
    m_thread->setLowLatency(m_probe.lowLatencyStations());
    m_probe.setThread(m_thread);
}

} // namespace campaign
