#ifndef TESTS_SUPPORT_WORKERBARRIER_H
#define TESTS_SUPPORT_WORKERBARRIER_H

#include <atomic>

class QThread;

/** Tells when a thread with an event loop has done all the work that was posted
 *  to it before. */
class WorkerBarrier {
public:
    explicit WorkerBarrier(QThread* thread);

    bool isReached() const { return m_reached; }

    /** Runs this thread's events until the barrier is reached. */
    void wait();

private:
    std::atomic<bool> m_reached;
};

#endif
