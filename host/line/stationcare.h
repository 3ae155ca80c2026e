#ifndef HOST_LINE_STATIONCARE_H
#define HOST_LINE_STATIONCARE_H

#include "host/line/answertime.h"
#include "host/line/stationhealth.h"

#include <map>
#include <mutex>

namespace host {

/** Which stations of a line are worth a wait, and how long: what lets one that is
 *  silent cost the others next to nothing.
 *
 *  A station that is silent to some requests in a row is held off: its requests
 *  are withheld, but for a probe after 5 s, later after up to 30 s. One that has
 *  answered is waited for as long as it has shown to take, with much to spare. One
 *  that never has is waited for a short time at first and longer later, up to the
 *  response timeout once; where others answer, such trials take at most a fiftieth of
 *  the line's time.
 *
 *  Times are ms of the port's clock, handed in. Any thread. */
class StationCare {
public:
    explicit StationCare(int timeout_ms) : m_timeout_ms(timeout_ms) {}

    /** Whether a request to @p station may go out now. A probe that may counts as
     *  taken. */
    bool admits(int station, qint64 now);

    /** A request to it has not gone out. */
    void withheld(int station);

    /** How long to wait for the answer to a request that goes out now, at most the
     *  timeout. @p wire_ms: the time that request and reply take on the wire. */
    int waitMsecs(int station, bool is_write, int wire_ms, qint64 now) const;

    /** True while nothing is known that would justify a long wait for it. */
    bool isTrial(int station) const;
    bool isHeldOff(int station) const;

    /** True for one that answers so late that an ordinary wait for it is long. */
    bool isSlow(int station) const;

    /** What became of a request. @{ */
    struct Answered {
        qint64 took_usecs; // from the first sending on
        int wire_ms;
        bool is_write;
        bool timed; // false: the answer may be one to an earlier sending
    };
    void answered(int station, const Answered& answer, qint64 now);
    void silent(int station, int waited_ms, qint64 now);
    void garbled(int station, qint64 now); // bytes came, but no answer
    /** @} */

    /** The answer to an earlier request has come now, @p took_ms after it. */
    void heardLate(int station, qint64 took_ms, qint64 now);

    /** A person asks: the next request is let through. */
    void askFor(int station);

    StationHealth health(int station) const;
    std::map<int, StationHealth> all() const;

    static constexpr int FirstProbeMsecs = 5000;
    static constexpr int LongestProbeMsecs = 30000;
    static constexpr int ProbeWaitMsecs = 60; // at least; a controller's usual turn-around
    static constexpr int ShortestWaitMsecs = 300;
    static constexpr int FirstTrialMsecs = 300;

private:
    struct Station {
        StationHealth health;
        AnswerTime read, write;
        int silent = 0;           // exchanges in a row without a byte
        qint64 silent_since = -1; // when the first of them began
        int trials = 0;           // waits in vain, each longer, for one never heard of
        int probe_gap = FirstProbeMsecs;
        qint64 next_probe = 0;
        bool asked_for = false;
        qint64 total_usecs = 0; // of all answers

        bool isKnown() const { return read.isKnown() || write.isKnown(); }
    };

    Station& stationLocked(int station) { return m_stations[station]; }
    const Station* findLocked(int station) const;
    void enter(Station& station, StationHealth::State state, qint64 now);
    void judgeSilence(Station& station, qint64 now);
    static void revive(Station& station);
    double ordinaryWait(const Station& station, bool is_write) const;
    int trialMsecs(int trials) const;
    int trialWait(const Station& station, qint64 now) const;
    bool isAnyUp() const;

    const int m_timeout_ms;
    mutable std::mutex m_mutex; // guards all below
    qint64 m_next_trial = 0;    // before it the line is the answering stations'
    std::map<int, Station> m_stations;
};

} // namespace host

#endif
