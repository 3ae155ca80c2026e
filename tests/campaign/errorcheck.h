#ifndef TESTS_CAMPAIGN_ERRORCHECK_H
#define TESTS_CAMPAIGN_ERRORCHECK_H

#include "tests/campaign/faultlog.h"

#include <QString>

#include <map>
#include <set>

namespace campaign {

/** Judges the driver's error texts: each must name a fault that was made. */
class ErrorCheck {
public:
    explicit ErrorCheck(const FaultLog& faults) : m_faults(faults) {}

    /** An exchange with @p station that began at @p sent ended with @p text. Returns
     *  what is wrong with that; empty when nothing is. */
    QString failed(int station, qint64 sent, const QString& text);

    /** An exchange with @p station that began at @p sent ended well. */
    void succeeded(int station, qint64 sent) {
        m_last_good[station] = sent;
        m_afflicted.erase(station);
    }

    /** The last text. */
    QString text() const { return m_text; }

private:
    bool isExplained(int station, qint64 sent, const QString& text) const;

    const FaultLog& m_faults;
    std::map<int, qint64> m_last_good; // when the last good exchange of each began
    std::set<int> m_afflicted;         // stations that have not answered well since a fault
    QString m_text;
};

} // namespace campaign

#endif
