#ifndef RUNTIME_PANEL_AVAILABLEMEMORY_H
#define RUNTIME_PANEL_AVAILABLEMEMORY_H

#include <QtGlobal>

/** Where nothing limits a process's memory, or nothing is known of it. */
const quint64 UnlimitedMemory = ~quint64(0);

/** Bytes that this process can still take: as many as the machine has for it
 *  without killing another (the kernel's word, see panelPaths()), and not more
 *  than the process's address space has left, which a 32-bit pointer and the
 *  limit set for the process bound. Any thread. */
quint64 availableMemory();

#endif
