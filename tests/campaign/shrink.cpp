#include "tests/campaign/shrink.h"

#include <algorithm>

namespace campaign {

namespace {

/** Delta debugging: leaves out ever smaller parts of the script. */
class Shrinker {
public:
    explicit Shrinker(const Regression& wrong) : m_best(wrong) {}

    Regression run() {
        keepIfWrong(m_best);
        for (std::size_t part = std::max<std::size_t>(1, m_best.faults.size() / 2);;) {
            if (leaveOutParts(part))
                continue;
            if (part == 1)
                return m_best;
            part /= 2;
        }
    }

private:
    /** Returns whether something could go. */
    bool leaveOutParts(std::size_t part) {
        bool any = false;
        for (std::size_t from = 0; from < m_best.faults.size();) {
            const bool less = keepIfWrong(without(from, part));
            from += less ? 0 : part;
            any = any || less;
        }
        return any;
    }

    Regression without(std::size_t from, std::size_t part) const {
        Regression less = m_best;
        const auto begin = less.faults.begin() + std::ptrdiff_t(from);
        const auto left = std::size_t(less.faults.end() - begin);
        less.faults.erase(begin, begin + std::ptrdiff_t(std::min(part, left)));
        return less;
    }

    bool keepIfWrong(const Regression& candidate) {
        const Outcome outcome = play(candidate);
        if (outcome.failure.isEmpty())
            return false;
        m_best = candidate;
        m_best.comment = outcome.failure;
        m_best.exchanges = std::min(candidate.exchanges, outcome.step);
        return true;
    }

    Regression m_best;
};

} // namespace

Regression shrunk(const Regression& wrong) {
    return Shrinker(wrong).run();
}

} // namespace campaign
