#ifndef TESTS_SANITIZERS_QTINLINES_H
#define TESTS_SANITIZERS_QTINLINES_H

/** Included before everything else in ThreadSanitizer builds: two inline parts of
 *  Qt that the sanitizer would misread. The rest is in qtsynchronization.cpp. */
#include <QtCore/qatomic.h>

// Containers ask "am I the only owner?" with a relaxed load before they write in
// place. The processor keeps that order, the sanitizer goes by the letter of the
// language; here the question is asked with an acquiring load.
#define loadRelaxed loadAcquire
#include <QtCore/qrefcount.h>
#undef loadRelaxed

#include <QtCore/qhash.h>

#define loadRelaxed loadAcquire
#include <QtCore/qshareddata.h>
#undef loadRelaxed

#include <QtCore/qmetatype.h>
#include <sanitizer/tsan_interface.h>

namespace QtMetaTypePrivate {

/** Qt's own, but a copy is handed over under its address: the arguments of a
 *  queued call are copied in one thread and read in another. */
template <typename T>
struct QMetaTypeFunctionHelper<T, true> {
    static void Destruct(void* value) { static_cast<T*>(value)->~T(); }

    static void* Construct(void* where, const void* original) {
        T* copy = original ? new (where) T(*static_cast<const T*>(original)) : new (where) T;
        __tsan_release(where);
        return copy;
    }

    static void Save(QDataStream& stream, const void* value) {
        stream << *static_cast<const T*>(value);
    }

    static void Load(QDataStream& stream, void* value) { stream >> *static_cast<T*>(value); }
};

} // namespace QtMetaTypePrivate

#endif
