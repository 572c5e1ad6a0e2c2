// How fast a notification is, from the call of `notify` to the callback of a listener, and what the parts of it cost.
#include <VXInterprocess/SharedMemory.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

namespace VX
{

namespace
{

using Clock = std::chrono::steady_clock;

const std::string channel = "quorvix-bench";

/// The time of the callback, written by a thread that waits.
class TimedListener
{
public:
    TimedListener() = default;

    ~TimedListener()
    {
        memory_.stop();
        thread_.join();
    }

    TimedListener(const TimedListener&) = delete;
    TimedListener& operator=(const TimedListener&) = delete;

    /// Blocks until the callback has been called `count` times in all.
    [[nodiscard]] Clock::time_point waitForCallback(std::size_t count) const
    {
        for (std::size_t now = callbacks_; now < count; now = callbacks_)
            callbacks_.wait(now);
        return last_;
    }

private:
    SharedMemory memory_{channel, true};
    std::atomic<Clock::time_point> last_{};
    std::atomic<std::size_t> callbacks_{0};
    std::thread thread_{[this]
                        {
                            memory_.wait(
                                [this]
                                {
                                    last_ = Clock::now();
                                    ++callbacks_;
                                    callbacks_.notify_all();
                                });
                        }};
};

void notifyToCallback(benchmark::State& state)
{
    const TimedListener listener;
    SharedMemory notifier(channel, false);
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state)
    {
        // A listener sleeps when it is notified; it would not yet, right after the last callback.
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        const Clock::time_point start = Clock::now();
        notifier.notify([] {});
        const std::chrono::duration<double> time = listener.waitForCallback(times.size() + 1) - start;
        state.SetIterationTime(time.count());
        times.push_back(time.count() * 1e6);
    }
    std::sort(times.begin(), times.end());
    state.counters["median_us"] = times[times.size() / 2];
    state.counters["p99_us"] = times[times.size() * 99 / 100];
}

void notifyWhereNobodyListens(benchmark::State& state)
{
    SharedMemory owner(channel, true);
    for ([[maybe_unused]] auto _ : state)
        owner.notify([] {});
}

void countListeners(benchmark::State& state)
{
    const TimedListener listener;
    const SharedMemory other(channel, false);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(other.listenerCount());
}

/// What a program does that is handed a link: open, notify, close.
void handOver(benchmark::State& state)
{
    const TimedListener listener;
    for ([[maybe_unused]] auto _ : state)
        SharedMemory(channel, false).notify([] {});
}

BENCHMARK(notifyToCallback)->UseManualTime()->Iterations(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(notifyWhereNobodyListens)->Unit(benchmark::kMicrosecond);
BENCHMARK(countListeners)->Unit(benchmark::kMicrosecond);
BENCHMARK(handOver)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace VX
