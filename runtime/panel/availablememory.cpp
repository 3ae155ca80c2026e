#include "runtime/panel/availablememory.h"

#include "runtime/panel/panelpaths.h"

#include <QFile>

#include <cstdio>
#include <sys/resource.h>

namespace {

// What a 32-bit kernel leaves to a process; the rest is the kernel's own.
const quint64 ReachOfAPointer = sizeof(void*) == 4 ? Q_UINT64_C(3) << 30 : UnlimitedMemory;

const qint64 MaxInformationBytes = 16 * 1024;
const qint64 MaxMappingBytes = 8 * 1024; // a path of the longest kind included

/** The value of a line such as "MemFree:  1234 kB" in bytes; false without one. */
bool readAmount(const QByteArray& information, const char* key, quint64& bytes) {
    const int at = information.indexOf(QByteArray("\n") + key + ':');
    unsigned long long kilobytes = 0;
    if (at < 0 || std::sscanf(information.constData() + at, "%*s %llu", &kilobytes) != 1)
        return false;
    bytes = kilobytes * 1024;
    return true;
}

/** Kernels before 3.14 make no estimate of their own: there it is the memory
 *  that is free or only holds copies of files. */
quint64 machinesMemory() {
    QFile file(panelPaths().memory_information);
    if (!file.open(QIODevice::ReadOnly))
        return UnlimitedMemory;
    const QByteArray information = '\n' + file.read(MaxInformationBytes);
    quint64 available = 0;
    if (readAmount(information, "MemAvailable", available))
        return available;
    quint64 unused = 0;
    quint64 buffers = 0;
    quint64 cached = 0;
    const bool known = readAmount(information, "MemFree", unused) &&
                       readAmount(information, "Buffers", buffers) &&
                       readAmount(information, "Cached", cached);
    return known ? unused + buffers + cached : UnlimitedMemory;
}

/** Of the mappings, not of the kernel's counter: under an emulator of the panel's
 *  processor that one counts the emulator's. */
quint64 addressSpaceInUse() {
    QFile mappings(QString::fromLatin1("/proc/self/maps"));
    quint64 bytes = 0;
    if (!mappings.open(QIODevice::ReadOnly))
        return bytes;
    for (;;) {
        const QByteArray line = mappings.readLine(MaxMappingBytes);
        if (line.isEmpty())
            return bytes;
        unsigned long long begin = 0;
        unsigned long long end = 0;
        if (std::sscanf(line.constData(), "%llx-%llx", &begin, &end) == 2)
            bytes += end - begin;
    }
}

quint64 addressSpaceLeft() {
    rlimit limit = {};
    quint64 size = ReachOfAPointer;
    if (getrlimit(RLIMIT_AS, &limit) == 0)
        size = qMin(size, quint64(limit.rlim_cur)); // without a limit the largest number
    if (size == UnlimitedMemory)
        return UnlimitedMemory;
    const quint64 in_use = addressSpaceInUse();
    return in_use < size ? size - in_use : 0;
}

} // namespace

quint64 availableMemory() {
    return qMin(machinesMemory(), addressSpaceLeft());
}
