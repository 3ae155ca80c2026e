#include "tests/support/messagelog.h"

#include "runtime/base/qtcompat.h"

#include <QtDebug>

#include <mutex>

namespace {

std::mutex log_mutex;
QStringList logged; // guarded by log_mutex

void keep(const QString& message) {
    std::lock_guard<std::mutex> lock(log_mutex);
    logged.append(message);
}

#if PANEL_QT4
QtMsgHandler previous_handler = nullptr;

void keepMessage(QtMsgType, const char* message) {
    keep(QString::fromLocal8Bit(message));
}

QtMsgHandler install(QtMsgHandler handler) {
    return qInstallMsgHandler(handler);
}
#else
QtMessageHandler previous_handler = nullptr;

void keepMessage(QtMsgType, const QMessageLogContext&, const QString& message) {
    keep(message);
}

QtMessageHandler install(QtMessageHandler handler) {
    return qInstallMessageHandler(handler);
}
#endif

} // namespace

MessageLog::MessageLog() {
    {
        std::lock_guard<std::mutex> lock(log_mutex);
        logged.clear();
    }
    previous_handler = install(keepMessage);
}

MessageLog::~MessageLog() {
    install(previous_handler);
}

QStringList MessageLog::messages() const {
    std::lock_guard<std::mutex> lock(log_mutex);
    QStringList copy = logged;
    copy.detach();
    return copy;
}

bool MessageLog::contains(const char* text) const {
    return !messages().filter(QString::fromLatin1(text)).isEmpty();
}
