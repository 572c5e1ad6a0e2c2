// The software renderer of Mesa 22.3 asks whether its threads are done with a picture without taking the lock that they
// say so under, and frees that lock (`lp_fence_signalled`, `lp_fence_destroy`) though the last of them may not have
// released it yet: the release writes to memory that is somebody else's by then. Seen once in about a million pictures
// on a busy machine, as damage to the heap. Here whoever destroys a mutex waits until it is released; of a library
// that is linked before the C library, this function takes the place of its own.

#include <VXViewer/Export.h>

#include <dlfcn.h>
#include <pthread.h>

#include <cerrno>
#include <ctime>

namespace
{

/// A mutex that is never released is destroyed as ever: one that its own thread still holds.
constexpr time_t longestWaitSeconds = 1;

void waitForRelease(pthread_mutex_t* mutex)
{
    int held = ::pthread_mutex_trylock(mutex);
    if (held == EBUSY)
    {
        timespec end{};
        ::clock_gettime(CLOCK_MONOTONIC, &end);
        end.tv_sec += longestWaitSeconds;
        held = ::pthread_mutex_clocklock(mutex, CLOCK_MONOTONIC, &end);
    }
    if (held == 0 || held == EOWNERDEAD)
        ::pthread_mutex_unlock(mutex);
}

} // namespace

extern "C" VXVIEWER_API int pthread_mutex_destroy(pthread_mutex_t* mutex) noexcept
{
    static const auto destroy =
        reinterpret_cast<int (*)(pthread_mutex_t*)>(::dlsym(RTLD_NEXT, "pthread_mutex_destroy"));
    waitForRelease(mutex);
    return destroy(mutex);
}
