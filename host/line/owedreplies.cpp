#include "host/line/owedreplies.h"

#include <algorithm>

namespace host {

namespace {

// That a controller keeps while it works on another. What is sent to one that is dead
// must not be owed for ever.
constexpr int RequestsInWaiting = 2;

} // namespace

void OwedReplies::sent(const Question& question, qint64 now, int wire_ms) {
    std::vector<Owed>& owed = current(question.station, now);
    const qint64 begun = owed.empty() ? now : owed.back().latest;
    const qint64 latest = std::min(begun, now + RequestsInWaiting * m_lateness_ms);
    owed.push_back({question.subaddress, question.values(), now, latest + m_lateness_ms + wire_ms});
}

bool OwedReplies::isClean(int station, qint64 now) {
    return current(station, now).empty();
}

qint64 OwedReplies::take(const WholeReply& reply, qint64 now) {
    std::vector<Owed>& owed = current(reply.station, now);
    const auto first = std::find_if(owed.begin(), owed.end(), [&reply](const Owed& one) {
        return one.subaddress == reply.subaddress && (reply.refused || one.values == reply.values);
    });
    if (first == owed.end())
        return -1;
    const qint64 sent = first->sent;
    owed.erase(first);
    return sent;
}

bool OwedReplies::owesOther(int station, int values, qint64 now) {
    const std::vector<Owed>& owed = current(station, now);
    return std::any_of(owed.begin(), owed.end(),
                       [values](const Owed& one) { return one.values != values; });
}

int OwedReplies::freeCount(int station, qint64 now) {
    const std::vector<Owed>& owed = current(station, now);
    int count = 1;
    while (std::any_of(owed.begin(), owed.end(),
                       [count](const Owed& one) { return one.values == count; }))
        ++count;
    return count;
}

/** Those of @p station that can still come. */
std::vector<OwedReplies::Owed>& OwedReplies::current(int station, qint64 now) {
    std::vector<Owed>& owed = m_owed[station];
    owed.erase(std::remove_if(owed.begin(), owed.end(),
                              [now](const Owed& one) { return one.latest < now; }),
               owed.end());
    return owed;
}

} // namespace host
