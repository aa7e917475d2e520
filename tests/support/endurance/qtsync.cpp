// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Tells the thread sanitizer of the synchronisation inside Qt, which the distribution has built
// without it: a library to be loaded before the others.
//
// Each function here stands for Qt's own of the same name, calls it, and says what it orders:
// whoever takes a lock comes after all that was done before its release, whoever is given an event
// after all that was done before it was posted, whoever has waited for a call or a thread after its
// end. Events share one order, which is more than Qt promises: a race between two threads shows
// itself only if they exchange no event in between.
#include <dlfcn.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

extern "C" {
// Empty outside of the sanitizer, such as in a database server that the tests start.
void __tsan_acquire(void *address) __attribute__((weak));
void __tsan_release(void *address) __attribute__((weak));
}

namespace {

char posted; // what was done before events were posted
char delivered; // what was done by those to whom they went
char destroyed; // what was done before objects went

void acquire(void *address)
{
    if (__tsan_acquire)
        __tsan_acquire(address);
}

void release(void *address)
{
    if (__tsan_release)
        __tsan_release(address);
}

/// Qt's own function.
template <typename Function>
Function own(const char *name)
{
    void *const address = dlsym(RTLD_NEXT, name);
    if (!address)
        abort();
    return reinterpret_cast<Function>(address);
}

/// Qt's arguments of a call by name, which travel by value.
struct Argument
{
    const void *data;
    const char *name;
};

using Action = void (*)(void *);
using CountedAction = void (*)(void *, int);
using Attempt = bool (*)(void *);
using CountedAttempt = bool (*)(void *, int);
using TimedAttempt = bool (*)(void *, int, int);
using Delivery = void (*)(void *, void *);

Delivery realDelivery = nullptr;

/// Hands over an event that carries a call, on the receiver's thread.
void deliver(void *event, void *receiver)
{
    realDelivery(event, receiver);
    release(&delivered);
}

/// Qt calls it before any event goes to its receiver, on the receiver's thread.
bool beforeEvent(void **)
{
    acquire(&posted);
    return false; // the event goes its way
}

/// Events pass a door that Qt has for debuggers. The end of a call is seen where Qt calls a virtual
/// function of its own.
__attribute__((constructor)) void takeOverDelivery()
{
    using Register = bool (*)(int, bool (*)(void **));
    void *const registration = dlsym(RTLD_DEFAULT,
                                     "_ZN9QInternal16registerCallbackENS_8CallbackEPFbPPvE");
    if (registration && !reinterpret_cast<Register>(registration)(0, &beforeEvent))
        abort();

    auto **const table = static_cast<void **>(dlsym(RTLD_DEFAULT, "_ZTV14QMetaCallEvent"));
    void *const delivery = dlsym(RTLD_DEFAULT, "_ZN14QMetaCallEvent13placeMetaCallEP7QObject");
    if (!table || !delivery)
        return; // no Qt in this process
    const int place = 4; // after the two of the type and the two destructors
    if (table[place] != delivery)
        abort();
    realDelivery = reinterpret_cast<Delivery>(delivery);
    const auto pageSize = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto page = reinterpret_cast<uintptr_t>(table + place) & ~(pageSize - 1);
    if (mprotect(reinterpret_cast<void *>(page), pageSize, PROT_READ | PROT_WRITE) != 0)
        abort();
    table[place] = reinterpret_cast<void *>(&deliver);
}

} // namespace

#define QT_EXPORTED __attribute__((visibility("default")))

// Names as the compiler decorates them, so that no header of Qt is needed.
extern "C" {

QT_EXPORTED void _ZN6QMutex4lockEv(void *mutex)
{
    static const auto real = own<Action>("_ZN6QMutex4lockEv");
    real(mutex);
    acquire(mutex);
}

QT_EXPORTED bool _ZN6QMutex7tryLockEi(void *mutex, int timeout)
{
    static const auto real = own<CountedAttempt>("_ZN6QMutex7tryLockEi");
    const bool taken = real(mutex, timeout);
    if (taken)
        acquire(mutex);
    return taken;
}

QT_EXPORTED void _ZN6QMutex6unlockEv(void *mutex)
{
    static const auto real = own<Action>("_ZN6QMutex6unlockEv");
    release(mutex);
    real(mutex);
}

QT_EXPORTED void _ZN10QSemaphore7acquireEi(void *semaphore, int count)
{
    static const auto real = own<CountedAction>("_ZN10QSemaphore7acquireEi");
    real(semaphore, count);
    acquire(semaphore);
}

QT_EXPORTED bool _ZN10QSemaphore10tryAcquireEi(void *semaphore, int count)
{
    static const auto real = own<CountedAttempt>("_ZN10QSemaphore10tryAcquireEi");
    const bool taken = real(semaphore, count);
    if (taken)
        acquire(semaphore);
    return taken;
}

QT_EXPORTED bool _ZN10QSemaphore10tryAcquireEii(void *semaphore, int count, int timeout)
{
    static const auto real = own<TimedAttempt>("_ZN10QSemaphore10tryAcquireEii");
    const bool taken = real(semaphore, count, timeout);
    if (taken)
        acquire(semaphore);
    return taken;
}

QT_EXPORTED void _ZN10QSemaphore7releaseEi(void *semaphore, int count)
{
    static const auto real = own<CountedAction>("_ZN10QSemaphore7releaseEi");
    release(semaphore);
    real(semaphore, count);
}

QT_EXPORTED void _ZN14QReadWriteLock11lockForReadEv(void *lock)
{
    static const auto real = own<Action>("_ZN14QReadWriteLock11lockForReadEv");
    real(lock);
    acquire(lock);
}

QT_EXPORTED void _ZN14QReadWriteLock12lockForWriteEv(void *lock)
{
    static const auto real = own<Action>("_ZN14QReadWriteLock12lockForWriteEv");
    real(lock);
    acquire(lock);
}

QT_EXPORTED void _ZN14QReadWriteLock6unlockEv(void *lock)
{
    static const auto real = own<Action>("_ZN14QReadWriteLock6unlockEv");
    release(lock);
    real(lock);
}

QT_EXPORTED void _ZN11QMetaObject8activateEP7QObjectPKS_iPPv(void *sender, const void *metaObject,
                                                             int signal, void **arguments)
{
    using Activate = void (*)(void *, const void *, int, void **);
    static const auto real = own<Activate>("_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    release(&posted);
    real(sender, metaObject, signal, arguments);
    acquire(&delivered);
}

/// The tests use the name's signal to run a step on another thread.
QT_EXPORTED void _ZN7QObject13setObjectNameERK7QString(void *object, const void *name)
{
    using SetName = void (*)(void *, const void *);
    static const auto real = own<SetName>("_ZN7QObject13setObjectNameERK7QString");
    release(&posted);
    real(object, name);
    acquire(&delivered);
}

QT_EXPORTED bool
_ZN11QMetaObject12invokeMethodEP7QObjectPKcN2Qt14ConnectionTypeE22QGenericReturnArgument16QGenericArgumentS7_S7_S7_S7_S7_S7_S7_S7_S7_(
    void *receiver, const char *method, int type, Argument result, Argument a0, Argument a1,
    Argument a2, Argument a3, Argument a4, Argument a5, Argument a6, Argument a7, Argument a8,
    Argument a9)
{
    using Invoke = bool (*)(void *, const char *, int, Argument, Argument, Argument, Argument,
                            Argument, Argument, Argument, Argument, Argument, Argument, Argument);
    static const auto real = own<Invoke>(
        "_ZN11QMetaObject12invokeMethodEP7QObjectPKcN2Qt14ConnectionTypeE22QGenericReturnArgument"
        "16QGenericArgumentS7_S7_S7_S7_S7_S7_S7_S7_S7_");
    release(&posted);
    const bool found = real(receiver, method, type, result, a0, a1, a2, a3, a4, a5, a6, a7, a8, a9);
    acquire(&delivered);
    return found;
}

QT_EXPORTED void _ZN7QObjectD2Ev(void *object)
{
    static const auto real = own<Action>("_ZN7QObjectD2Ev");
    real(object);
    release(&destroyed);
}

QT_EXPORTED void _ZN7QThread4quitEv(void *thread)
{
    static const auto real = own<Action>("_ZN7QThread4quitEv");
    release(&posted);
    real(thread);
}

/// The worker is the last that goes on its thread.
QT_EXPORTED bool _ZN7QThread4waitEm(void *thread, unsigned long milliseconds)
{
    using Wait = bool (*)(void *, unsigned long);
    static const auto real = own<Wait>("_ZN7QThread4waitEm");
    const bool ended = real(thread, milliseconds);
    if (ended)
        acquire(&destroyed);
    return ended;
}
} // extern "C"
