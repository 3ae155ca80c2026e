#ifndef TESTS_CAMPAIGN_DICE_H
#define TESTS_CAMPAIGN_DICE_H

#include <QtGlobal>

#include <cstddef>

namespace campaign {

/** Random numbers that are the same on every machine and with every library.
 *  Streams of the same seed do not disturb each other: one that is asked more
 *  often leaves the others' numbers as they are. */
class Dice {
public:
    explicit Dice(quint64 seed, quint64 stream = 0)
        : m_state(seed * Q_UINT64_C(0x9E3779B97F4A7C15) + stream * Q_UINT64_C(0xD1B54A32D192ED03)) {
        next();
    }

    quint64 next() {
        m_state += Q_UINT64_C(0x9E3779B97F4A7C15);
        quint64 mixed = m_state;
        mixed = (mixed ^ (mixed >> 30)) * Q_UINT64_C(0xBF58476D1CE4E5B9);
        mixed = (mixed ^ (mixed >> 27)) * Q_UINT64_C(0x94D049BB133111EB);
        return mixed ^ (mixed >> 31);
    }

    /** Both bounds included. */
    int between(int least, int most) {
        return least + int(next() % quint64(qint64(most) - least + 1));
    }

    bool chance(double probability) {
        return double(next() >> 11) < probability * 9007199254740992.0; // of 2^53
    }

    template <typename List>
    const auto& pick(const List& list) {
        return list[std::size_t(next() % quint64(list.size()))];
    }

private:
    quint64 m_state;
};

} // namespace campaign

#endif
