#ifndef TESTS_CAMPAIGN_VERDICT_H
#define TESTS_CAMPAIGN_VERDICT_H

#include <QString>

namespace campaign {

/** What is wrong with a run: the first thing that was found. */
class Verdict {
public:
    void fail(const QString& text) {
        if (m_text.isEmpty())
            m_text = text;
    }
    bool hasFailed() const { return !m_text.isEmpty(); }
    QString text() const { return m_text; }

private:
    QString m_text;
};

} // namespace campaign

#endif
