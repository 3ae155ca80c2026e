#ifndef RUNTIME_PANEL_KDEVICE_H
#define RUNTIME_PANEL_KDEVICE_H

#include "runtime/base/clock.h"
#include "runtime/base/panelservice.h"
#include "runtime/panel/storagedevice.h"

#include <QString>
#include <QThread>

#include <atomic>
#include <mutex>

class PlatformInterface;

/** Watches the removable storage on a thread of its own: activity every second,
 *  mounts and space every two. The object and its signals belong to the thread
 *  that made it, the GUI thread; queries may come from any thread. */
class PANEL_SERVICE KDevice : public QThread {
    Q_OBJECT

public:
    enum PlatformKind { PLATFORM_ARM = 1, PLATFORM_X86 = 2 };

    /** Takes stock of the machine's devices; the thread is not started. */
    explicit KDevice(Clock& clock = Clock::system());

    /** Watches through a platform of the caller's, who keeps it alive; null
     *  leaves all queries without an answer. */
    KDevice(PlatformInterface* watched, Clock& clock);

    /** Stops the thread. The platform and with it all mounts stay alive. */
    ~KDevice() override;

    /** The process's monitor, made and started by the first call. That should
     *  come from the GUI thread; a first call from another thread, such as a
     *  recipe transfer's, makes a monitor that belongs to the GUI thread. Code that cannot link
     * against this class finds the pointer in the application's property "KDevice", as a void*. */
    static KDevice* getInstance();

    /** Stops the process's monitor; it stays the process's monitor. */
    static void dropInstance();

    /** Returns when the thread has ended, up to a second and a pass later. From
     *  then on queries have no answer. */
    void stopRunning();

    /** The kind of machine, by the host's word: a PlatformKind. */
    int determinePlatform();

    /** The platform for a kind: 0 and 3 have none, any number but these and
     *  PLATFORM_X86 is the panel. Never deleted, so that devices stay mounted. */
    static PlatformInterface* makePlatform(int kind);

    /** Bytes; 0 without such a device. */
    quint64 getTotalSpace(DeviceType type);
    quint64 getFreeSpace(DeviceType type);

    /** The directory of the first device of the kind; empty without one. */
    QString getMount(DeviceType type);

public slots:
    /** The same for a plain number, through the meta-object system. */
    QString getMount(int _t);

signals:
    void deviceMounted(int type, int index, bool mounted);
    void deviceInIO(int type, int index, bool active);

protected:
    void run() override;

private slots:
    /** Puts the pointer into the application's property. */
    void publish();

private:
    Q_DISABLE_COPY(KDevice)

    void watch(PlatformInterface* watched);

    std::atomic<PlatformInterface*> platform;
    std::atomic<bool> stopFlag;
    Clock& m_clock;

    // A host that carries this class too shares these with the plug-in, and both
    // construct and destroy what has a constructor or a destructor. So none has:
    // std::mutex is constant from the start and has nothing to release.
    static std::mutex m_instance_guard; // guards m_instance
    static KDevice* m_instance;         // lives to the end of the process
};

#endif
