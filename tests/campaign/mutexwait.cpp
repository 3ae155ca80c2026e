// A fiber that finds a mutex taken must let the fiber run that holds it: all live
// in one thread, which would otherwise wait for itself. The function below takes the
// place of Qt's in this program, for the driver as for everything else (the dynamic
// linker finds the program's definition first).
#include "tests/campaign/virtualtime.h"

#include <QMutex>

#include <dlfcn.h>

namespace {

void lockAsQtDoes(QMutex* mutex) {
    using Lock = void (*)(QMutex*);
    static const auto original = reinterpret_cast<Lock>(dlsym(RTLD_NEXT, "_ZN6QMutex4lockEv"));
    original(mutex);
}

} // namespace

void QMutex::lock() noexcept {
    if (QBasicMutex::tryLock()) // never true of a recursive one
        return;
    campaign::VirtualTime* const world = campaign::VirtualTime::current();
    if (!world || isRecursive()) {
        lockAsQtDoes(this);
        return;
    }
    while (!QBasicMutex::tryLock())
        world->waitForMutex();
}
