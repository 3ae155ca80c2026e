#ifndef APPS_DMC50CTL_INTERRUPTION_H
#define APPS_DMC50CTL_INTERRUPTION_H

#include <atomic>
#include <functional>
#include <mutex>

/** Ctrl-C as both threads of a command see it. Any thread. */
class Interruption {
public:
    /** What ends the command's present work, called at once when it has been
     *  interrupted already. Null takes it away: it is not called any more when this
     *  has returned. */
    void setEnding(std::function<void()> ending) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ending = std::move(ending);
        if (m_ending && m_interrupted)
            m_ending();
    }

    void interrupt() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_interrupted = true;
        if (m_ending)
            m_ending();
    }

    const std::atomic<bool>& interrupted() const { return m_interrupted; }

private:
    std::mutex m_mutex; // guards m_ending
    std::function<void()> m_ending;
    std::atomic<bool> m_interrupted{false};
};

#endif
