#ifndef TESTS_CAMPAIGN_VERDICT_H
#define TESTS_CAMPAIGN_VERDICT_H

#include <QString>

#include <functional>

namespace campaign {

/** What is wrong with a run: the first thing that was found; empty texts are none. */
class Verdict {
public:
    /** Called at the first failure. */
    explicit Verdict(const std::function<void()>& at_failure) : m_at_failure(at_failure) {}

    void fail(const QString& text) {
        if (hasFailed() || text.isEmpty())
            return;
        m_text = text;
        m_at_failure();
    }
    bool hasFailed() const { return !m_text.isEmpty(); }
    QString text() const { return m_text; }

private:
    const std::function<void()> m_at_failure;
    QString m_text;
};

} // namespace campaign

#endif
