// An hour of a thousand lines a second while the log service does not answer: what the lines' thread waits at worst,
// while another one flushes once a second, and the memory that it takes in the end.

#include <quorvix/auth/UserInfo.h>
#include <quorvix/telemetry/ServerSendSink.h>

#include <VXViewer/WebRequests.h>
#include <VXViewer/WebTransport.h>

#include <benchmark/benchmark.h>
#include <json/value.h>
#include <spdlog/details/log_msg.h>

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <semaphore>
#include <thread>
#include <vector>

namespace
{

using std::chrono::system_clock;

constexpr int seconds = 3600;
constexpr int linesASecond = 1000;

/// A service that cannot be reached.
class NoService final : public VX::WebTransport
{
public:
    void send(VX::WebRequestData request, VX::WebCallback callback) override
    {
        ++requests;
        bodyBytes = request.body ? request.body->size() : 0;
        Json::Value answer;
        answer["code"] = 0;
        callback(answer);
    }

    std::atomic<int> requests = 0;
    std::atomic<std::size_t> bodyBytes = 0; ///< of the last request
};

double peakMiB()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

/// Flushes once after each `start`, on a thread of its own.
class Flusher
{
public:
    explicit Flusher(VX::ServerSendSink& sink)
        : sink_(sink)
    {
    }

    ~Flusher()
    {
        finish();
        stopping_ = true;
        start_.release();
        thread_.join();
    }

    Flusher(const Flusher&) = delete;
    Flusher& operator=(const Flusher&) = delete;

    void finish() { done_.acquire(); }

    void start() { start_.release(); }

private:
    void work_()
    {
        for (start_.acquire(); !stopping_; start_.acquire())
        {
            sink_.flush();
            done_.release();
        }
    }

    VX::ServerSendSink& sink_;
    std::atomic<bool> stopping_ = false;
    std::binary_semaphore start_{0};
    std::binary_semaphore done_{1};
    std::thread thread_{[this] { work_(); }};
};

void hourWithoutService(benchmark::State& state)
{
    const auto service = std::make_shared<NoService>();
    VX::WebRequests::setTransport(service);
    VX::UserInfo::setAccessToken("token");
    const spdlog::details::log_msg line("", spdlog::level::info, "Opened a scene with 4 objects and 80000 triangles");
    std::vector<double> waits(static_cast<std::size_t>(seconds) * linesASecond); // its memory is not the sink's
    const double peakBefore = peakMiB();
    for (auto _ : state)
    {
        waits.clear();
        std::atomic<system_clock::time_point> now = system_clock::now();
        VX::ServerSendSink sink({.url = "http://127.0.0.1:1/v1/logs"}, [&now] { return now.load(); });
        Flusher flusher(sink);
        for (int second = 0; second < seconds; ++second)
        {
            flusher.finish();
            flusher.start();
            for (int i = 0; i < linesASecond; ++i)
            {
                now = now.load() + std::chrono::milliseconds(1);
                const auto begin = std::chrono::steady_clock::now();
                sink.log(line);
                waits.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
            }
        }
    }
    VX::UserInfo::setAccessToken({});
    VX::WebRequests::reset();

    std::ranges::sort(waits);
    const auto microseconds = [&waits](double fraction)
    { return waits[static_cast<std::size_t>(static_cast<double>(waits.size() - 1) * fraction)] * 1e6; };
    state.counters["median_us"] = microseconds(0.5);
    state.counters["p9999_us"] = microseconds(0.9999);
    state.counters["p999999_us"] = microseconds(0.999999);
    state.counters["worst_us"] = microseconds(1);
    state.counters["requests"] = service->requests.load();
    state.counters["lastBodyMiB"] = static_cast<double>(service->bodyBytes) / (1U << 20U);
    state.counters["peakMiB"] = peakMiB() - peakBefore;
}

BENCHMARK(hourWithoutService)->Iterations(1)->Unit(benchmark::kSecond);

} // namespace
