// Teaches ThreadSanitizer what Qt's own synchronization means.
//
// Debian's Qt is not built with ThreadSanitizer and synchronizes through futexes
// and atomics inside its libraries, so the sanitizer sees neither a QMutex nor a
// queued signal and reports every access that they guard. The functions below
// take the place of Qt's functions of the same name in every program of a
// ThreadSanitizer build (the dynamic linker finds the program's definition
// first, also for plug-ins), call Qt's own and tell the sanitizer who has waited
// for whom. Nothing is suppressed: a race of our code is still reported, also in
// a slot that Qt calls. docs/sanitizers.md says what was tried.
#include <QCoreApplication>
#include <QMutex>
#include <QSemaphore>
#include <QThread>
#include <QThreadStorage>
#include <QWaitCondition>

#include <private/qobject_p.h>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

#include <array>
#include <atomic>

// What Qt does inside its libraries is Qt's: only our accesses are compared.
extern "C" const char* __tsan_default_options() {
    return "ignore_noninstrumented_modules=1:second_deadlock_stack=1:atexit_sleep_ms=0";
}

namespace {

/** Qt's own definition of the function whose linker name is @p name. */
template <typename Function>
Function qtFunction(const char* name) {
    void* found = dlsym(RTLD_NEXT, name);
    if (!found)
        qFatal("%s is not in this Qt", name);
    return reinterpret_cast<Function>(found);
}

/** An address inside @p object that stands for one kind of hand-over. */
enum HandOver { EndOfThread, Signal, Reply, Invocation, Deletion };
void* key(const void* object, HandOver kind) {
    return const_cast<char*>(static_cast<const char*>(object)) + kind;
}

unsigned mutexFlags(const QMutex* mutex) {
    return mutex->isRecursive() ? __tsan_mutex_write_reentrant : 0;
}

} // namespace

// --- Mutexes and conditions ---------------------------------------------------

QMutex::~QMutex() {
    static const auto original = qtFunction<void (*)(QMutex*)>("_ZN6QMutexD1Ev");
    __tsan_mutex_destroy(this, 0);
    original(this);
}

void QMutex::lock() noexcept {
    static const auto original = qtFunction<void (*)(QMutex*)>("_ZN6QMutex4lockEv");
    __tsan_mutex_pre_lock(this, mutexFlags(this));
    original(this);
    __tsan_mutex_post_lock(this, mutexFlags(this), 0);
}

bool QMutex::tryLock(int timeout) noexcept {
    static const auto original = qtFunction<bool (*)(QMutex*, int)>("_ZN6QMutex7tryLockEi");
    const unsigned flags = mutexFlags(this) | __tsan_mutex_try_lock;
    __tsan_mutex_pre_lock(this, flags);
    const bool locked = original(this, timeout);
    __tsan_mutex_post_lock(this, flags | (locked ? 0 : __tsan_mutex_try_lock_failed), 0);
    return locked;
}

void QMutex::unlock() noexcept {
    static const auto original = qtFunction<void (*)(QMutex*)>("_ZN6QMutex6unlockEv");
    __tsan_mutex_pre_unlock(this, mutexFlags(this));
    original(this);
    __tsan_mutex_post_unlock(this, mutexFlags(this));
}

bool QWaitCondition::wait(QMutex* mutex, QDeadlineTimer deadline) {
    static const auto original = qtFunction<bool (*)(QWaitCondition*, QMutex*, QDeadlineTimer)>(
        "_ZN14QWaitCondition4waitEP6QMutex14QDeadlineTimer");
    __tsan_mutex_pre_unlock(mutex, 0);
    __tsan_mutex_post_unlock(mutex, 0);
    const bool woken = original(this, mutex, deadline);
    __tsan_mutex_pre_lock(mutex, 0);
    __tsan_mutex_post_lock(mutex, 0, 0);
    return woken;
}

bool QWaitCondition::wait(QMutex* mutex, unsigned long time) {
    return wait(mutex, time == ULONG_MAX ? QDeadlineTimer(QDeadlineTimer::Forever)
                                         : QDeadlineTimer(qint64(time)));
}

// --- Semaphores: hand-overs without an owner --------------------------------------

void QSemaphore::acquire(int n) {
    static const auto original =
        qtFunction<void (*)(QSemaphore*, int)>("_ZN10QSemaphore7acquireEi");
    original(this, n);
    __tsan_acquire(this);
}

bool QSemaphore::tryAcquire(int n) {
    static const auto original =
        qtFunction<bool (*)(QSemaphore*, int)>("_ZN10QSemaphore10tryAcquireEi");
    const bool acquired = original(this, n);
    if (acquired)
        __tsan_acquire(this);
    return acquired;
}

bool QSemaphore::tryAcquire(int n, int timeout) {
    static const auto original =
        qtFunction<bool (*)(QSemaphore*, int, int)>("_ZN10QSemaphore10tryAcquireEii");
    const bool acquired = original(this, n, timeout);
    if (acquired)
        __tsan_acquire(this);
    return acquired;
}

void QSemaphore::release(int n) {
    static const auto original =
        qtFunction<void (*)(QSemaphore*, int)>("_ZN10QSemaphore7releaseEi");
    __tsan_release(this);
    original(this, n);
}

// --- Threads ----------------------------------------------------------------------

namespace {

/** Lives in the thread's local storage, which Qt empties after the last of our
 *  code has run there and before it wakes those who wait for the thread. */
class ThreadEnd {
public:
    explicit ThreadEnd(QThread* thread) : m_thread(thread) {}
    ~ThreadEnd() { __tsan_release(key(m_thread, EndOfThread)); }

private:
    Q_DISABLE_COPY(ThreadEnd)
    QThread* m_thread;
};

QThreadStorage<ThreadEnd*>& threadEnds() {
    static QThreadStorage<ThreadEnd*> ends;
    return ends;
}

} // namespace

void QThread::start(Priority priority) {
    static const auto original =
        qtFunction<void (*)(QThread*, Priority)>("_ZN7QThread5startENS_8PriorityE");
    threadEnds();
    QObject::connect(this, &QThread::started,
                     [this] { threadEnds().setLocalData(new ThreadEnd(this)); });
    original(this, priority);
}

bool QThread::wait(QDeadlineTimer deadline) {
    static const auto original =
        qtFunction<bool (*)(QThread*, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool ended = original(this, deadline);
    if (ended)
        __tsan_acquire(key(this, EndOfThread));
    return ended;
}

bool QThread::wait(unsigned long time) {
    return wait(time == ULONG_MAX ? QDeadlineTimer(QDeadlineTimer::Forever)
                                  : QDeadlineTimer(qint64(time)));
}

// Qt counts a thread as finished a moment before it tells anybody: a caller that
// hears "finished" from another thread waits that moment.

bool QThread::isFinished() const {
    static const auto original = qtFunction<bool (*)(const QThread*)>("_ZNK7QThread10isFinishedEv");
    const bool finished = original(this);
    if (finished && this != currentThread())
        const_cast<QThread*>(this)->wait(QDeadlineTimer(QDeadlineTimer::Forever));
    return finished;
}

bool QThread::isRunning() const {
    static const auto original = qtFunction<bool (*)(const QThread*)>("_ZNK7QThread9isRunningEv");
    const bool running = original(this);
    if (!running)
        isFinished();
    return running;
}

// --- Queued calls and events --------------------------------------------------------

namespace {

// Which senders have a blocking queued connection, by a hash of their address;
// two that share a place cost precision only. Relaxed atomics: a lock here would
// order all threads with each other and so hide races.
std::array<std::atomic<bool>, 4096> blocking_senders;

std::atomic<bool>& isBlockingSender(const QObject* sender) {
    return blocking_senders[(reinterpret_cast<quintptr>(sender) / alignof(QObject)) %
                            blocking_senders.size()];
}

void rememberSender(const QObject* sender, Qt::ConnectionType type) {
    if (type == Qt::BlockingQueuedConnection)
        isBlockingSender(sender).store(true, std::memory_order_relaxed);
}

void signalBegins(QObject* sender, int, void**) {
    __tsan_release(key(sender, Signal));
}

void signalEnds(QObject* sender, int) {
    if (isBlockingSender(sender).load(std::memory_order_relaxed))
        __tsan_acquire(key(sender, Reply));
}

/** The arguments were handed over one by one, see qtinlines.h. (A blocking call
 *  has none of its own: the sender waits and keeps them.) */
void acquireArguments(QAbstractMetaCallEvent* event) {
    const auto call = dynamic_cast<QMetaCallEvent*>(event);
    if (!call)
        return;
    void** end = reinterpret_cast<void**>(call->types()); // follow the arguments
    for (void** argument = call->args(); argument < end; ++argument) {
        if (*argument)
            __tsan_acquire(*argument);
    }
}

/** Qt asks before each delivery of an event; true means delivered here. */
bool deliver(void** parameters) {
    QObject* receiver = static_cast<QObject*>(parameters[0]);
    QEvent* event = static_cast<QEvent*>(parameters[1]);
    if (event->type() == QEvent::DeferredDelete)
        __tsan_acquire(key(receiver, Deletion));
    if (event->type() != QEvent::MetaCall) {
        __tsan_acquire(event);
        return false;
    }
    const auto call = static_cast<QAbstractMetaCallEvent*>(event);
    const QObject* sender = call->sender();
    __tsan_acquire(sender ? key(sender, Signal) : key(receiver, Invocation));
    acquireArguments(call);
    *static_cast<bool*>(parameters[2]) = QCoreApplication::instance()->notify(receiver, event);
    // The sender may be gone by now: its address is only a name here.
    __tsan_release(key(sender ? sender : receiver, Reply));
    return true;
}

const bool callbacks_registered = [] {
    static QSignalSpyCallbackSet callbacks = {signalBegins, nullptr, signalEnds, nullptr};
    qt_register_signal_spy_callbacks(&callbacks);
    return QInternal::registerCallback(QInternal::EventNotifyCallback, deliver);
}();

} // namespace

QMetaObject::Connection QObject::connect(const QObject* sender, const char* signal,
                                         const QObject* receiver, const char* member,
                                         Qt::ConnectionType type) {
    static const auto original = qtFunction<QMetaObject::Connection (*)(
        const QObject*, const char*, const QObject*, const char*, Qt::ConnectionType)>(
        "_ZN7QObject7connectEPKS_PKcS1_S3_N2Qt14ConnectionTypeE");
    rememberSender(sender, type);
    return original(sender, signal, receiver, member, type);
}

QMetaObject::Connection QObject::connectImpl(const QObject* sender, void** signal,
                                             const QObject* receiver, void** slot_pointer,
                                             QtPrivate::QSlotObjectBase* slot,
                                             Qt::ConnectionType type, const int* types,
                                             const QMetaObject* sender_class) {
    static const auto original = qtFunction<QMetaObject::Connection (*)(
        const QObject*, void**, const QObject*, void**, QtPrivate::QSlotObjectBase*,
        Qt::ConnectionType, const int*, const QMetaObject*)>(
        "_ZN7QObject11connectImplEPKS_PPvS1_S3_PN9QtPrivate15QSlotObjectBaseE"
        "N2Qt14ConnectionTypeEPKiPK11QMetaObject");
    rememberSender(sender, type);
    return original(sender, signal, receiver, slot_pointer, slot, type, types, sender_class);
}

bool QMetaObject::invokeMethod(QObject* object, const char* member, Qt::ConnectionType type,
                               QGenericReturnArgument result, QGenericArgument a0,
                               QGenericArgument a1, QGenericArgument a2, QGenericArgument a3,
                               QGenericArgument a4, QGenericArgument a5, QGenericArgument a6,
                               QGenericArgument a7, QGenericArgument a8, QGenericArgument a9) {
    using Arguments = QGenericArgument;
    static const auto original = qtFunction<bool (*)(
        QObject*, const char*, Qt::ConnectionType, QGenericReturnArgument, Arguments, Arguments,
        Arguments, Arguments, Arguments, Arguments, Arguments, Arguments, Arguments, Arguments)>(
        "_ZN11QMetaObject12invokeMethodEP7QObjectPKcN2Qt14ConnectionTypeE"
        "22QGenericReturnArgument16QGenericArgumentS7_S7_S7_S7_S7_S7_S7_S7_S7_");
    __tsan_release(key(object, Invocation));
    const bool invoked =
        original(object, member, type, result, a0, a1, a2, a3, a4, a5, a6, a7, a8, a9);
    if (type == Qt::BlockingQueuedConnection)
        __tsan_acquire(key(object, Reply));
    return invoked;
}

bool QMetaObject::invokeMethodImpl(QObject* object, QtPrivate::QSlotObjectBase* slot,
                                   Qt::ConnectionType type, void* result) {
    static const auto original =
        qtFunction<bool (*)(QObject*, QtPrivate::QSlotObjectBase*, Qt::ConnectionType, void*)>(
            "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseE"
            "N2Qt14ConnectionTypeEPv");
    __tsan_release(key(object, Invocation));
    const bool invoked = original(object, slot, type, result);
    if (type == Qt::BlockingQueuedConnection)
        __tsan_acquire(key(object, Reply));
    return invoked;
}

void QCoreApplication::postEvent(QObject* receiver, QEvent* event, int priority) {
    static const auto original = qtFunction<void (*)(QObject*, QEvent*, int)>(
        "_ZN16QCoreApplication9postEventEP7QObjectP6QEventi");
    __tsan_release(event);
    original(receiver, event, priority);
}

void QObject::deleteLater() {
    static const auto original = qtFunction<void (*)(QObject*)>("_ZN7QObject11deleteLaterEv");
    __tsan_release(key(this, Deletion));
    original(this);
}
