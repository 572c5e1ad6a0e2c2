#include <gtest/gtest.h>

#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <latch>
#include <thread>

namespace VX
{

TEST(GraphicsFences, AMutexIsDestroyedOnceItIsReleased)
{
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    std::latch isLocked(1);
    std::atomic<bool> isReleased = false;
    std::thread holder(
        [&]
        {
            pthread_mutex_lock(&mutex);
            isLocked.count_down();
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            isReleased = true;
            pthread_mutex_unlock(&mutex);
        });
    isLocked.wait();
    EXPECT_EQ(pthread_mutex_destroy(&mutex), 0);
    EXPECT_TRUE(isReleased);
    holder.join();
}

TEST(GraphicsFences, AMutexThatItsOwnThreadHoldsIsNotWaitedForForLong)
{
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_mutex_lock(&mutex);
    EXPECT_EQ(pthread_mutex_destroy(&mutex), EBUSY);
}

} // namespace VX
