#ifndef HOST_LINE_OWEDREPLIES_H
#define HOST_LINE_OWEDREPLIES_H

#include "host/line/question.h"

#include <map>
#include <vector>

namespace host {

/** Requests whose answers may still be under way. A CPL reply names its station and
 *  nothing of its request, so while one is owed a reply of the same length could
 *  answer the wrong request.
 *
 *  Rests on two things: a station answers in the order in which it was asked, and
 *  never later than the response timeout after it has begun with a request; it begins
 *  when it is done with those before, of which it keeps few. Times are ms of the port's clock. One
 *  thread. */
class OwedReplies {
public:
    /** @p lateness_ms: the response timeout. */
    explicit OwedReplies(int lateness_ms) : m_lateness_ms(lateness_ms) {}

    /** A request that has gone out; @p wire_ms: its own and its reply's time on the
     *  wire. The station begins with it when it is done with those before. */
    void sent(const Question& question, qint64 now, int wire_ms);

    /** True when no reply of @p station can be under way. */
    bool isClean(int station, qint64 now);

    /** The station has answered what can only be the answer to its last request, so
     *  all before it have been answered or lost. */
    void settle(int station) { m_owed.erase(station); }

    /** Takes @p reply off the list: when the oldest request was sent that it could
     *  answer, or -1 when it owes none such. */
    qint64 take(const WholeReply& reply, qint64 now);

    /** True when @p station owes a reply that does not carry @p values. */
    bool owesOther(int station, int values, qint64 now);

    /** The smallest number of values, from 1 on, that no owed reply has. */
    int freeCount(int station, qint64 now);

private:
    struct Owed {
        QByteArray subaddress;
        int values;
        qint64 sent;
        qint64 latest; // when it can come at all
    };

    std::vector<Owed>& current(int station, qint64 now);

    const int m_lateness_ms;
    std::map<int, std::vector<Owed>> m_owed; // by station, oldest first
};

} // namespace host

#endif
