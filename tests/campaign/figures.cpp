#include "tests/campaign/figures.h"

#include <algorithm>

namespace campaign {

Figures& Figures::operator+=(const Figures& other) {
    for (quint64 Figures::*sum :
         {&Figures::runs, &Figures::exchanges, &Figures::sent, &Figures::good_reads,
          &Figures::values, &Figures::failed_exchanges, &Figures::writes_confirmed,
          &Figures::writes_failed, &Figures::writes_refused, &Figures::writes_repeated,
          &Figures::caller_reads, &Figures::caller_reads_failed, &Figures::hasty_reads,
          &Figures::left_behind, &Figures::sessions, &Figures::undetectable,
          &Figures::late_recoveries, &Figures::digest})
        this->*sum += other.*sum;
    virtual_ms += other.virtual_ms;
    longest_read_ms = std::max(longest_read_ms, other.longest_read_ms);
    longest_recovery_ms = std::max(longest_recovery_ms, other.longest_recovery_ms);
    for (std::size_t i = 0; i < faults.size(); ++i)
        faults[i] += other.faults[i];
    return *this;
}

} // namespace campaign
