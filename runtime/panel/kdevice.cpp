#include "runtime/panel/kdevice.h"

#include "runtime/base/connectchecked.h"
#include "runtime/interfaces/platform.h"
#include "runtime/panel/armlinuxhmi.h"
#include "runtime/panel/x86linuxhmi.h"

#include <QCoreApplication>
#include <QVariant>

namespace {

const quint32 PassMsecs = 1000;

} // namespace

std::mutex KDevice::m_instance_guard;
KDevice* KDevice::m_instance = nullptr;

KDevice::KDevice(Clock& clock) : platform(nullptr), stopFlag(false), m_clock(clock) {
    watch(makePlatform(determinePlatform()));
}

KDevice::KDevice(PlatformInterface* watched, Clock& clock)
    : platform(nullptr), stopFlag(false), m_clock(clock) {
    watch(watched);
}

KDevice::~KDevice() {
    stopRunning();
}

PlatformInterface* KDevice::makePlatform(int kind) {
    switch (kind) {
    case 0:
    case 3:
        return nullptr;
    case PLATFORM_X86:
        return new X86LinuxHmi;
    default:
        return new ArmLinuxHmi;
    }
}

void KDevice::watch(PlatformInterface* watched) {
    platform = watched;
    if (!watched)
        return;
    connectChecked(watched, SIGNAL(platDeviceMounted(int, int, bool)), this,
                   SIGNAL(deviceMounted(int, int, bool)));
    connectChecked(watched, SIGNAL(platDeviceInIO(int, int, bool)), this,
                   SIGNAL(deviceInIO(int, int, bool)));
    watched->checkGlobalMountStatus();
    watched->processDeviceMountStatus();
}

KDevice* KDevice::getInstance() {
    std::lock_guard<std::mutex> lock(m_instance_guard);
    if (!m_instance) {
        m_instance = new KDevice;
        if (QCoreApplication::instance()) {
            m_instance->moveToThread(QCoreApplication::instance()->thread());
            QMetaObject::invokeMethod(m_instance, "publish"); // queued from another thread
        }
        m_instance->start(QThread::LowestPriority);
    }
    return m_instance;
}

void KDevice::publish() {
    QCoreApplication::instance()->setProperty("KDevice",
                                              QVariant::fromValue(static_cast<void*>(this)));
}

void KDevice::dropInstance() {
    std::lock_guard<std::mutex> lock(m_instance_guard);
    if (m_instance)
        m_instance->stopRunning();
}

void KDevice::stopRunning() {
    stopFlag = true;
    wait();
    platform = nullptr;
}

int KDevice::determinePlatform() {
    return Platform::getInstance()->isX86HMI() ? PLATFORM_X86 : PLATFORM_ARM;
}

quint64 KDevice::getTotalSpace(DeviceType type) {
    PlatformInterface* const watched = platform;
    return watched ? watched->getTotalSpace(type) : 0;
}

quint64 KDevice::getFreeSpace(DeviceType type) {
    PlatformInterface* const watched = platform;
    return watched ? watched->getFreeSpace(type) : 0;
}

QString KDevice::getMount(DeviceType type) {
    PlatformInterface* const watched = platform;
    return watched ? watched->getMount(type) : QString();
}

QString KDevice::getMount(int _t) {
    const bool known = _t >= DEVICE_NONE && _t <= DEVICE_ROOT;
    return known ? getMount(DeviceType(_t)) : QString();
}

void KDevice::run() {
    PlatformInterface* const watched = platform;
    if (!watched || stopFlag)
        return;
    for (bool mounts_are_due = false;; mounts_are_due = !mounts_are_due) {
        watched->processIOStatus();
        m_clock.sleepMsecs(PassMsecs);
        if (stopFlag)
            return;
        if (mounts_are_due) {
            watched->processDeviceMountStatus();
            watched->processDeviceSpaceStatus();
        }
    }
}
