#ifndef HOST_LINE_ANSWERTIME_H
#define HOST_LINE_ANSWERTIME_H

#include <cmath>
#include <optional>

namespace host {

/** How long a station takes to answer, without the time of the characters on the
 *  wire: smoothed mean and deviation, with the weights of RFC 6298. Times in ms. */
class AnswerTime {
public:
    /** One answer has been timed. */
    void add(double took) {
        if (!m_mean) {
            restart(took);
            return;
        }
        m_deviation += (std::abs(took - *m_mean) - m_deviation) / 4;
        *m_mean += (took - *m_mean) / 8;
    }

    /** Takes @p took for the first that is known: what was learned is no longer so. */
    void restart(double took) {
        m_mean = took;
        m_deviation = took / 2;
    }

    bool isKnown() const { return m_mean.has_value(); }

    /** Later than this an answer is not expected; isKnown(). */
    double latest() const { return *m_mean + 4 * m_deviation; }

private:
    std::optional<double> m_mean;
    double m_deviation = 0;
};

} // namespace host

#endif
