#ifndef HOST_SESSION_PANELSESSION_H
#define HOST_SESSION_PANELSESSION_H

#include "host/session/attendedport.h"
#include "host/session/driverplugin.h"
#include "host/session/linksession.h"

#include <QSet>

#include <map>

namespace host {

/** Who listens to the lines of a project. */
struct PanelSetup {
    LineLog log;
    trace::FrameTrace* frame_trace = nullptr; // may be null
    Clock* clock = &Clock::system();
};

/** The links of a project at work. Thread: as LinkSession; cancel() any. */
class PanelSession {
public:
    /** Opens the ports of the links @p link_ids and gives each a driver. Never null;
     *  an error when a port does not open. The panel directory has
     *  been set before. The plug-in outlives the session; there is one session at a
     *  time. */
    static Result<std::unique_ptr<PanelSession>> open(const Project& project,
                                                      const QSet<int>& link_ids,
                                                      DriverPlugin& plugin,
                                                      const PanelSetup& setup);

    /** The tags that the drivers shall keep fresh, each in its link. */
    void poll(const QVector<TagDefinition>& tags);

    /** One of the links that were opened. */
    LinkSession& link(int id) { return *m_links.at(id); }

    /** Where the thread of that link meets its driver's. */
    LineAttendance& attendance(int id) { return m_ports.at(id)->attendance(); }

    /** Results in the order of @p tags, whose links must be open. */
    QVector<TagResult> readAll(const QVector<TagDefinition>& tags);

    /** Looks for errors on all links for @p msecs, or until cancel(). */
    void observe(int msecs);

    void cancel();

    /** The sum over all links, the longest reply of any. */
    LineStatistics statistics() const;

private:
    explicit PanelSession(Clock& clock) : m_clock(clock) {}

    Clock& m_clock;
    std::atomic<bool> m_cancelled{false};
    std::map<int, std::unique_ptr<LinkSession>> m_links; // by LINKID
    std::map<int, AttendedPort*> m_ports;                // the links' own
};

} // namespace host

#endif
