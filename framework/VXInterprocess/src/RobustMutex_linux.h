#pragma once

#include <pthread.h>

namespace VX
{

/// A mutex in memory that processes share. One whose owner dies can be locked by the next: what it guards must be whole
/// at any moment. Needs no destructor, so that the memory can go without one.
class RobustMutex
{
public:
    /// @throws std::system_error
    RobustMutex();

    RobustMutex(const RobustMutex&) = delete;
    RobustMutex& operator=(const RobustMutex&) = delete;

    /// @throws std::system_error  also where this thread has it already
    void lock();

    void unlock();

private:
    pthread_mutex_t mutex_{};
};

} // namespace VX
