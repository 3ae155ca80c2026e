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
    explicit Dice(quint64 seed, quint64 stream = 0) : m_state(mixed(mixed(seed) + stream)) {}

    quint64 next() {
        m_state += Q_UINT64_C(0x9E3779B97F4A7C15);
        return mixed(m_state);
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
    static quint64 mixed(quint64 bits) {
        bits = (bits ^ (bits >> 30)) * Q_UINT64_C(0xBF58476D1CE4E5B9);
        bits = (bits ^ (bits >> 27)) * Q_UINT64_C(0x94D049BB133111EB);
        return bits ^ (bits >> 31);
    }

    quint64 m_state;
};

} // namespace campaign

#endif
