#ifndef TESTS_UNIT_PANEL_SIGNALCOUNTER_H
#define TESTS_UNIT_PANEL_SIGNALCOUNTER_H

#include <QObject>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

/** Counts a signal that any thread emits: connect it directly to count(). */
class SignalCounter : public QObject {
    Q_OBJECT

public:
    /** Counts @p signal of @p sender, given by SIGNAL(). */
    SignalCounter(const QObject* sender, const char* signal);

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
