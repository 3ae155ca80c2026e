#ifndef RUNTIME_BASE_CONNECTCHECKED_H
#define RUNTIME_BASE_CONNECTCHECKED_H

#include "runtime/base/fatal.h"

#include <QObject>

/** QObject::connect for texts made by SIGNAL() and SLOT(). A misspelt one is a
 *  programming error and ends the program instead of leaving a dead panel. */
inline void connectChecked(const QObject* sender, const char* signal, const QObject* receiver,
                           const char* member, Qt::ConnectionType type = Qt::AutoConnection) {
    const bool connected = QObject::connect(sender, signal, receiver, member, type);
    FATAL_CHECK(connected, "QObject::connect(sender, signal, receiver, member, type)");
}

#endif
