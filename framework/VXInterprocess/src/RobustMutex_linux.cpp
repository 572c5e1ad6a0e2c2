#include "RobustMutex_linux.h"

#include <cerrno>
#include <system_error>

namespace VX
{

namespace
{

void check(int error, const char* what)
{
    if (error != 0)
        throw std::system_error(error, std::generic_category(), what);
}

} // namespace

RobustMutex::RobustMutex()
{
    pthread_mutexattr_t attributes;
    check(pthread_mutexattr_init(&attributes), "mutex attributes");
    pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
    pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_ERRORCHECK);
    const int error = pthread_mutex_init(&mutex_, &attributes);
    pthread_mutexattr_destroy(&attributes);
    check(error, "mutex");
}

void RobustMutex::lock()
{
    int error = pthread_mutex_lock(&mutex_);
    if (error == EOWNERDEAD)
        error = pthread_mutex_consistent(&mutex_);
    check(error, "lock of a channel");
}

void RobustMutex::unlock()
{
    pthread_mutex_unlock(&mutex_);
}

} // namespace VX
