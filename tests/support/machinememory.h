#ifndef TESTS_SUPPORT_MACHINEMEMORY_H
#define TESTS_SUPPORT_MACHINEMEMORY_H

#include "runtime/panel/panelpaths.h"
#include "tests/support/temporarydirectory.h"

/** A machine whose available memory the test chooses, while it lives. */
class MachineMemory {
public:
    MachineMemory() : m_previous(panelPaths()) {
        PanelPaths paths = m_previous;
        paths.memory_information = m_directory.filePath(QString::fromLatin1("meminfo"));
        setPanelPaths(paths);
    }
    explicit MachineMemory(quint64 available) : MachineMemory() { setAvailable(available); }
    ~MachineMemory() { setPanelPaths(m_previous); }
    MachineMemory(const MachineMemory&) = delete;
    MachineMemory& operator=(const MachineMemory&) = delete;

    /** All that the kernel says about its memory. */
    void setInformation(const QByteArray& information) {
        m_directory.write(QString::fromLatin1("meminfo"), information);
    }

    void setAvailable(quint64 bytes) {
        setInformation("MemTotal: 1 kB\nMemAvailable:  " + QByteArray::number(bytes / 1024) +
                       " kB\n");
    }

private:
    TemporaryDirectory m_directory;
    PanelPaths m_previous;
};

#endif
