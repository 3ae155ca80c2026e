#include "host/session/panelsession.h"

#include "host/line/portaddress.h"

#include <algorithm>

namespace host {

namespace {

Result<std::unique_ptr<AttendedPort>> makePort(const Project& project, const LinkDefinition& link,
                                               const PanelSetup& setup) {
    const Result<PortAddress> address = parsePortAddress(link.port);
    if (!address)
        return Failure(address.error());
    const DeviceSetting device = link.deviceSetting();
    PortOptions options;
    options.frame_trace = setup.frame_trace;
    options.clock = setup.clock;
    options.care = link.care;
    auto port = std::make_unique<AttendedPort>(makeChannel(*address, device), device,
                                               link.driverSetting(project.defaultStation(link.id)),
                                               setup.log, options);
    if (!port->open())
        return Failure(port->lastError());
    return port;
}

} // namespace

Result<std::unique_ptr<PanelSession>> PanelSession::open(const Project& project,
                                                         const QSet<int>& link_ids,
                                                         DriverPlugin& plugin,
                                                         const PanelSetup& setup) {
    std::unique_ptr<PanelSession> session(new PanelSession(*setup.clock));
    for (const LinkDefinition& link : project.links) {
        if (!link_ids.contains(link.id))
            continue;
        Result<std::unique_ptr<AttendedPort>> port = makePort(project, link, setup);
        if (!port)
            return Failure(port.error());
        session->m_ports[link.id] = port->get();
        // One driver serves one line: the root object the first, others the rest.
        auto driver = session->m_links.empty() ? plugin.takeRootDriver() : plugin.createDriver();
        session->m_links[link.id] =
            std::make_unique<LinkSession>(std::move(*port), std::move(driver), *setup.clock);
    }
    return session;
}

void PanelSession::poll(const QVector<TagDefinition>& tags) {
    for (auto& [id, link] : m_links) {
        QVector<TagDefinition> own;
        std::copy_if(tags.begin(), tags.end(), std::back_inserter(own),
                     [id = id](const TagDefinition& tag) { return tag.link_id == id; });
        link->poll(own);
    }
}

QVector<TagResult> PanelSession::readAll(const QVector<TagDefinition>& tags) {
    QVector<TagResult> results(tags.size());
    for (auto& [id, link] : m_links) {
        QVector<TagDefinition> own;
        QVector<int> places;
        for (int i = 0; i < tags.size(); ++i) {
            if (tags[i].link_id != id)
                continue;
            own.append(tags[i]);
            places.append(i);
        }
        const QVector<TagResult> own_results = link->readAll(own);
        for (int i = 0; i < own.size(); ++i)
            results[places[i]] = own_results[i];
    }
    return results;
}

void PanelSession::observe(int msecs) {
    const qint64 deadline = m_clock.msecsSinceBoot() + msecs;
    while (!m_cancelled && m_clock.msecsSinceBoot() < deadline) {
        for (auto& [id, link] : m_links)
            link->lookForError();
        m_clock.sleepMsecs(LinkSession::LookIntervalMsecs);
    }
}

void PanelSession::cancel() {
    m_cancelled = true;
    for (auto& [id, link] : m_links)
        link->cancel();
}

LineStatistics PanelSession::statistics() const {
    LineStatistics sum;
    for (const auto& [id, link] : m_links)
        sum += link->port().statistics();
    return sum;
}

} // namespace host
