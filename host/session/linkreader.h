#ifndef HOST_SESSION_LINKREADER_H
#define HOST_SESSION_LINKREADER_H

#include "host/line/exchange.h"
#include "host/session/drivererror.h"
#include "host/session/linksession.h"
#include "host/session/polledstation.h"
#include "host/session/valueboard.h"

#include <functional>
#include <map>

namespace host {

/** Where moments come from. */
struct MomentSource {
    std::function<qint64()> monotonic_usecs; // the ports' microsecond clock
    std::function<qint64()> utc_msecs;       // since 1970

    /** The moment at which the microsecond clock showed @p usecs. */
    Moment at(qint64 usecs) const {
        return {usecs, utc_msecs() - (monotonic_usecs() - usecs) / 1000};
    }
    Moment now() const { return at(monotonic_usecs()); }
};

/** Brings what a link's driver reads again and again to a board: of each exchange
 *  the values, of each failure the driver's text.
 *
 *  A frame that fails is tried again by the driver; its tags fail when it is given
 *  up. Thread: the link's. */
class LinkReader {
public:
    /** All but @p moments outlive the reader. @p ids: the link's tags of controller
     *  data. */
    LinkReader(LinkSession& session, ValueBoard& board, const std::vector<TagId>& ids,
               MomentSource moments);

    /** While the driver's polling thread is held after the exchanges @p shown: takes
     *  their values, or the error, out of the driver. */
    void take(const std::vector<Exchange>& shown);

    /** Brings what was taken to the board; with @p is_sure false, because the polling
     *  thread went on meanwhile, drops it: the next scan has it, too. */
    void publish(bool is_sure);

    /** The driver has polled nothing but @p tag for a while and then forgets what it
     *  has read. */
    void sessionWas(const TagDefinition& tag) { m_session_was = &tag; }

    /** All tags fail. */
    void failAll(const QString& text);

private:
    struct Taken {
        PolledStation* station;
        int frame;
        QByteArray dwords;
        Moment when;
    };

    bool mayBeForgotten(const Exchange& exchange);
    void takeFrame(const Exchange& exchange);
    void countFailure(const QString& text, const DriverError& error);

    LinkSession& m_session;
    ValueBoard& m_board;
    const MomentSource m_moments;
    const int m_attempts; // that the driver makes of a request
    std::vector<TagId> m_ids;
    std::map<int, PolledStation> m_stations;
    std::map<std::pair<int, int>, int> m_failures; // in a row, by station and frame
    std::vector<Taken> m_taken;
    const TagDefinition* m_session_was = nullptr;
};

} // namespace host

#endif
