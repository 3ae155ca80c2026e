#ifndef TESTS_UNIT_PANEL_SIGNALCOUNTER_H
#define TESTS_UNIT_PANEL_SIGNALCOUNTER_H

#include <QObject>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

/** Counts a signal that any thread emits. A sender that emits on a thread of its
 *  own ends before the counter. */
class SignalCounter : public QObject {
    Q_OBJECT

public:
    SignalCounter() = default;
    SignalCounter(const QObject* sender, const char* signal) { follow(sender, signal); }

    /** Counts @p signal of @p sender, given by SIGNAL(), from now on. */
    void follow(const QObject* sender, const char* signal);

    int value() const;
    void waitFor(int count) const;

    /** How many of them the calling thread has emitted. */
    int fromThisThread() const;

public slots:
    void count();

private:
    mutable std::mutex m_mutex; // guards m_emitters
    mutable std::condition_variable m_changed;
    std::vector<std::thread::id> m_emitters; // of each signal, in order
};

#endif
