#ifndef TESTS_SUPPORT_MEMORYCONTROLLER_H
#define TESTS_SUPPORT_MEMORYCONTROLLER_H

#include <QByteArray>
#include <QList>
#include <QMutex>
#include <QtGlobal>

#include <map>

/** Makes "STX body ETX checksum CR LF" of a frame's body, such as
 *  "0100XRN00LL00002016". */
QByteArray cplFrame(const QByteArray& body);

/** Just enough of a controller for tests in memory: answers RN, WG and WN
 *  requests of any station from one memory per station. Any thread. */
class MemoryController {
public:
    QByteArray answer(const QByteArray& request);

    quint32 value(int station, quint32 address) const;
    void setValue(int station, quint32 address, quint32 value);

private:
    /** Stores what a WG or WN request writes; the caller holds the mutex. */
    void store(const QByteArray& request);

    mutable QMutex m_mutex; // guards m_memory
    std::map<int, std::map<quint32, quint32>> m_memory;
};

/** The station, and the addresses (RN), the address and the values behind it (WG) or
 *  the pairs in turn (WN) of a request. */
int requestStation(const QByteArray& request);
QByteArray requestCommand(const QByteArray& request);
QList<quint32> requestItems(const QByteArray& request);

#endif
