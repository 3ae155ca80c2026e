#ifndef TESTS_CAMPAIGN_LINEFAULT_H
#define TESTS_CAMPAIGN_LINEFAULT_H

#include <QString>

#include <optional>
#include <vector>

namespace campaign {

/** One thing that goes wrong, at one request of a run. Bytes are counted from 0 and
 *  modulo the length of what is struck. */
struct LineFault {
    enum class Kind {
        // The simulator's own kinds.
        Silence,
        Late,
        Split,
        Dribble,
        BadChecksum,
        WrongStation,
        EndCode,
        Truncate,
        NoiseBefore,
        NoiseAfter,
        Echo,
        Close,
        // The campaign's.
        Deleted,      // `value` bytes of the reply from byte `at` on never come
        Inserted,     // `value` other bytes stand before byte `at`
        Glued,        // the reply before this one comes once more, right behind it
        OtherStation, // another station answers for this one, under its own number
        Completed,    // only `at` bytes come, right before the next reply on the line, if
                      // that is in time; `value` odd: in place of as many of its own
        Forged,       // two digits are wrong so that the sum is right again
        Dead,         // the station hears nothing for `ms`
        PowerLoss,    // the same, and its memory restarts
        Unplugged,    // the adapter is pulled `at` ms after the request, for `ms`
    };
    quint64 request = 0; // of the run, the first being 1
    Kind kind = Kind::Silence;
    int ms = 0;
    int at = 0;
    int value = 0;
};

constexpr int FaultKinds = int(LineFault::Kind::Unplugged) + 1;

/** The faults of a run, in ascending order of their requests. */
using FaultScript = std::vector<LineFault>;

QString kindName(LineFault::Kind kind);

/** "17 late ms=400 at=0 value=0", and back. @{ */
QString faultLine(const LineFault& fault);
std::optional<LineFault> parseFaultLine(const QString& line);
/** @} */

} // namespace campaign

#endif
