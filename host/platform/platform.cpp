#include "runtime/interfaces/platform.h"

#include <QApplication>

#include <atomic>

namespace {

std::atomic<bool> buzzer_on(true); // kept for the life of the process

} // namespace

Platform* Platform::getInstance() {
    static Platform platform;
    return &platform;
}

bool Platform::isX86HMI() {
    return true;
}

bool Platform::BuzzerOn() {
    return buzzer_on;
}

void Platform::setBuzzerOn(bool on) {
    buzzer_on = on;
}

void Platform::BuzzerAlarm(int, int) {
    // A PC's bell has neither pitch nor length. It belongs to the GUI thread.
    QObject* const application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (buzzer_on && application)
        QMetaObject::invokeMethod(application, &QApplication::beep, Qt::QueuedConnection);
}
