#include "tests/support/workerbarrier.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QThread>

#include <chrono>
#include <thread>

namespace {

/** Sets a flag in the thread in which it is handled and destroyed. */
class Arrival : public QObject {
public:
    explicit Arrival(std::atomic<bool>& reached) : m_reached(reached) {}

    bool event(QEvent* event) override {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        m_reached = true;
        deleteLater();
        return true;
    }

private:
    std::atomic<bool>& m_reached;
};

} // namespace

WorkerBarrier::WorkerBarrier(QThread* thread) : m_reached(false) {
    Arrival* arrival = new Arrival(m_reached);
    arrival->moveToThread(thread);
    QCoreApplication::postEvent(arrival, new QEvent(QEvent::User));
}

void WorkerBarrier::wait() {
    while (!m_reached) {
        QCoreApplication::processEvents();
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
}
