// What a request costs over loopback, against a copy in memory. Both ends run in this process and share its cores.
#include <VXViewer/WebRequest.h>
#include <VXViewer/WebRequests.h>

#include <benchmark/benchmark.h>
#include <json/value.h>

#include <net/HttpServer.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <future>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

constexpr std::size_t fileSize = 200'000'000;

/// Keeps uploads in a file and answers "/file" with it.
class Service final : public HttpHandler
{
public:
    Service()
    {
        std::filesystem::create_directories(folder_);
        std::ofstream(file(), std::ios::binary) << std::string(fileSize, 'x');
        server_ = std::move(HttpServer::start({}, *this).value());
    }

    ~Service() override
    {
        WebRequests::reset();
        server_.reset();
        std::filesystem::remove_all(folder_);
    }

    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    [[nodiscard]] std::string url(const std::string& path) const
    {
        return "http://127.0.0.1:" + std::to_string(server_->port()) + path;
    }

    [[nodiscard]] std::filesystem::path file() const { return folder_ / "file"; }

    [[nodiscard]] std::filesystem::path copy() const { return folder_ / "copy"; }

private:
    tl::expected<HttpBodySink, HttpResponse> acceptBody(const HttpRequest& head) override
    {
        return HttpBodySink{.limit = fileSize, .file = head.method == "PUT" ? copy() : std::filesystem::path()};
    }

    void handle(HttpRequest request, Respond respond) override
    {
        if (request.path == "/file")
            respond({.file = file()});
        else
            respond({.body = R"({"result":{"state":"in_progress"}})"});
    }

    const std::filesystem::path folder_ = std::filesystem::temp_directory_path() / "quorvix-web-request-bench";
    std::unique_ptr<HttpServer> server_;
};

/// Removes what the round before left: replacing a file makes the file system write the new one to the disk at once.
void removeCopy(benchmark::State& state, const Service& service)
{
    state.PauseTiming();
    std::filesystem::remove(service.copy());
    state.ResumeTiming();
}

/// False where the request failed.
bool sendAndWait(WebRequest& request)
{
    int code = 0;
    request.setAsync(false);
    request.send([&](const Json::Value& answer) { code = answer["code"].asInt(); });
    return code == 200;
}

/// The half of the times that is quicker than this, in microseconds.
double median(std::vector<double>& times)
{
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return times.empty() ? 0.0 : *middle;
}

void copyInMemory(benchmark::State& state)
{
    const std::string from(fileSize, 'x');
    std::string to(fileSize, 'y');
    for ([[maybe_unused]] auto _ : state)
    {
        std::memcpy(to.data(), from.data(), fileSize);
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * fileSize));
}

void uploadFile(benchmark::State& state)
{
    const Service service;
    WebRequest request(service.url("/upload"));
    request.setMethod(WebRequest::Method::Put);
    request.setInputPath(service.file());
    for ([[maybe_unused]] auto _ : state)
    {
        removeCopy(state, service);
        if (!sendAndWait(request))
            state.SkipWithError("the upload failed");
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * fileSize));
}

void downloadFile(benchmark::State& state)
{
    const Service service;
    WebRequest request(service.url("/file"));
    request.setOutputPath(service.copy());
    for ([[maybe_unused]] auto _ : state)
    {
        removeCopy(state, service);
        if (!sendAndWait(request))
            state.SkipWithError("the download failed");
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * fileSize));
}

void smallRequest(benchmark::State& state)
{
    const Service service;
    WebRequest request(service.url("/status"));
    request.setMethod(WebRequest::Method::Post);
    request.setBody(R"({"request_id":"1"})");
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state)
    {
        const auto start = std::chrono::steady_clock::now();
        if (!sendAndWait(request))
            state.SkipWithError("the request failed");
        times.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
    }
    state.counters["median_us"] = median(times);
}

void smallRequestsAtOnce(benchmark::State& state)
{
    const Service service;
    for ([[maybe_unused]] auto _ : state)
    {
        std::vector<std::future<int>> answers;
        for (int i = 0; i < 100; ++i)
        {
            auto promise = std::make_shared<std::promise<int>>();
            answers.push_back(promise->get_future());
            WebRequest(service.url("/status"))
                .send([promise](const Json::Value& answer) { promise->set_value(answer["code"].asInt()); });
        }
        for (auto& answer : answers)
            if (answer.get() != 200)
                state.SkipWithError("a request failed");
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * 100));
}

BENCHMARK(copyInMemory)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(uploadFile)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2);
BENCHMARK(downloadFile)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2);
BENCHMARK(smallRequest)->Unit(benchmark::kMicrosecond)->UseRealTime()->Iterations(1000);
BENCHMARK(smallRequestsAtOnce)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

} // namespace VX
