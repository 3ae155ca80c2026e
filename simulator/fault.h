#ifndef SIMULATOR_FAULT_H
#define SIMULATOR_FAULT_H

#include "common/result.h"
#include "simulator/frame.h"

#include <QString>

#include <optional>

namespace simulator {

/** Something that goes wrong with the answer to a request. */
struct Fault {
    enum class Kind {
        Silence,      // as if the request had not been heard: nothing is carried out
        Late,         // the reply comes `ms` later than it would
        Split,        // a pause of `ms` after the first `at` bytes of the reply
        Dribble,      // a pause of `ms` before every byte but the first
        BadChecksum,  // the checksum digits are those of the right one plus 1
        WrongStation, // the reply names station `value`; without one, the next one
        EndCode,      // refused with end code `value`: nothing is carried out
        Truncate,     // only the first `at` bytes of the reply
        NoiseBefore,  // `bytes` right before the reply
        NoiseAfter,   // `bytes` right after the reply
        Echo,         // the request comes back before the reply
        Close,        // the line is closed for `ms`: nothing is carried out
    };
    Kind kind = Kind::Silence;

    // Which requests count for it.
    std::optional<quint8> station;  // none: those to any station
    std::optional<Command> command; // none: any command

    // Which of those it strikes; at most one of the three is set, none is all.
    quint32 on = 0;     // only this one, 1 being the first
    quint32 every = 0;  // each of this distance
    double chance = -1; // each with this probability, 0 to 1
    quint32 count = 0;  // it strikes at most this often; 0 is without end

    // How it looks; each kind uses those that it names above.
    int ms = 0;
    int at = 1;
    std::optional<quint8> value;
    QByteArray bytes;
};

/** The name of the kind in scripts: "silence", "late", "split", "dribble",
 *  "checksum", "wrong-station", "end-code", "truncate", "noise-before",
 *  "noise-after", "echo", "close". */
QString faultName(Fault::Kind kind);

/** The name and what it does, for the log: "late ms=400". */
QString describeFault(const Fault& fault);

/** Reads "KIND" or "KIND:KEY=VALUE,..."; the keys are in docs/simulator.md. */
Result<Fault> parseFault(const QString& text);

/** Begins a fault of the kind named @p name, with the kind's defaults. */
Result<Fault> makeFault(const QString& name);

/** Gives @p fault one setting. */
Result<void> applyFaultSetting(Fault& fault, const QString& key, const QString& value);

/** Checks that the settings of a complete fault go together. */
Result<void> checkFault(const Fault& fault);

} // namespace simulator

#endif
