// QMutex for the thread sanitizer. Qt is not instrumented, so the sanitizer does not see that who
// locks a QMutex comes after who unlocked it. The lock of the request bytes is one, and guards what
// the driver and the host share; the two functions here say so around Qt's own. The driver calls
// them, too, since a program's functions stand before a library's. Other locks are left alone: they
// are to hide no race.

#include "threads/host.h"

#include <dlfcn.h>

#include <sanitizer/tsan_interface.h>

namespace {

using Function = void (*)(QMutex *);

Function ownOfQt(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

void QMutex::lock() QT_MUTEX_LOCK_NOEXCEPT
{
    static const Function own = ownOfQt("_ZN6QMutex4lockEv");
    own(this);
    if (this == threads::requestsLock) {
        __tsan_acquire(this);
    }
}

void QMutex::unlock() noexcept
{
    static const Function own = ownOfQt("_ZN6QMutex6unlockEv");
    if (this == threads::requestsLock) {
        __tsan_release(this);
    }
    own(this);
}
