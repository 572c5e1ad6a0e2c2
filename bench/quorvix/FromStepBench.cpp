// Both forms of `fromStep` against a service on loopback that needs no time to convert: what remains is copying,
// packing, transferring and loading. Needs the output directory.

#include <quorvix/converter/ConverterService.h>
#include <quorvix/converter/ServiceFolder.h>
#include <quorvix/setup/Deployment.h>

#include <VXMesh/ObjectMesh.h>
#include <VXViewer/WebRequests.h>

#include <benchmark/benchmark.h>

#include <net/HttpServer.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <future>
#include <memory>
#include <string>
#include <utility>

namespace
{

constexpr std::uint64_t uploadLimit = std::uint64_t{1} << 30U;

// Accepts every upload and has converted it at once.
class InstantService final : VX::HttpHandler
{
public:
    explicit InstantService(std::filesystem::path scene)
        : scene_(std::move(scene))
        , server_(VX::HttpServer::start({}, *this).value())
    {
    }

    [[nodiscard]] std::uint16_t port() const { return server_->port(); }

private:
    tl::expected<VX::HttpBodySink, VX::HttpResponse> acceptBody(const VX::HttpRequest& /*head*/) override
    {
        return VX::HttpBodySink{.limit = uploadLimit};
    }

    void handle(VX::HttpRequest request, Respond respond) override
    {
        const std::string storage = "http://127.0.0.1:" + std::to_string(server_->port()) + "/storage";
        if (request.path.ends_with("/request"))
            respond({.body = R"({"result": {"request_id": "bench-)" + std::to_string(::getpid()) + R"(", "url": ")" +
                             storage + "\"}}"});
        else if (request.path.ends_with("/status"))
            respond({.body = R"({"result": {"state": "finished", "url": ")" + storage + "\"}}"});
        else if (request.path == "/storage" && request.method == "GET")
            respond({.file = scene_});
        else
            respond({.body = R"({"result": {}})"});
    }

    std::filesystem::path scene_;
    std::unique_ptr<VX::HttpServer> server_;
};

// A wavy square of 2 * side * side triangles.
void saveScene(const std::filesystem::path& file, std::uint32_t side)
{
    auto mesh = std::make_shared<VX::Mesh>();
    for (std::uint32_t y = 0; y <= side; ++y)
    {
        for (std::uint32_t x = 0; x <= side; ++x)
            mesh->points.emplace_back(static_cast<float>(x), static_cast<float>(y), static_cast<float>((x * y) % 17));
    }
    for (std::uint32_t y = 0; y < side; ++y)
    {
        for (std::uint32_t x = 0; x < side; ++x)
        {
            const std::uint32_t corner = y * (side + 1) + x;
            mesh->triangles.emplace_back(corner, corner + 1, corner + side + 2);
            mesh->triangles.emplace_back(corner, corner + side + 2, corner + side + 1);
        }
    }
    VX::Object root;
    root.addChild(std::make_shared<VX::ObjectMesh>(std::move(mesh)));
    static_cast<void>(VX::saveObjectToFile(root, file, {}));
}

// Text that packs about as well as STEP does.
void saveInput(const std::filesystem::path& file, std::size_t size)
{
    std::ofstream stream(file, std::ios::binary);
    for (std::size_t written = 0, line = 1; written < size; ++line)
    {
        const std::string text = "#" + std::to_string(line) + "=CARTESIAN_POINT('',(" +
                                 std::to_string(line * 7919 % 1000) + "." + std::to_string(line * 104729 % 100000) +
                                 ",0.,1.5));\n";
        stream << text;
        written += text.size();
    }
}

// The folder with the input and the scene, and the service.
class Setting
{
public:
    Setting(std::size_t inputSize, std::uint32_t side)
        : folder_(std::filesystem::temp_directory_path() / ("fromStepBench" + std::to_string(::getpid())))
    {
        std::filesystem::create_directories(folder_);
        saveScene(folder_ / "scene.vxu", side);
        saveInput(input(), inputSize);
        service_ = std::make_unique<InstantService>(folder_ / "scene.vxu");
        VX::resetDeployment();
        static_cast<void>(VX::setDeployment(VX::withEmbeddedServices({}, service_->port())));
    }

    ~Setting()
    {
        VX::WebRequests::reset();
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
        std::filesystem::remove_all(
            VX::ConverterService::serviceOutputDirectory() / ("bench-" + std::to_string(::getpid())), ignored);
    }

    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

    [[nodiscard]] std::filesystem::path input() const
    {
        return folder_ / ("bench" + std::to_string(::getpid()) + ".step");
    }

private:
    std::filesystem::path folder_;
    std::unique_ptr<InstantService> service_;
};

using Result = tl::expected<VX::LoadedObjects, std::string>;

Result convertAsync(const std::filesystem::path& input)
{
    std::promise<Result> promise;
    VX::ConverterService::fromStep(input, [&promise](Result result) { promise.set_value(std::move(result)); }, {});
    return promise.get_future().get();
}

// @param convert  one of the forms
template <typename Convert>
void fromStep(benchmark::State& state, const Convert& convert)
{
    const Setting setting(static_cast<std::size_t>(state.range(0)), static_cast<std::uint32_t>(state.range(1)));
    for (auto _ : state)
    {
        const Result result = convert(setting.input());
        if (!result)
        {
            state.SkipWithError(result.error().c_str());
            break;
        }
    }
}

void fromStepBlocking(benchmark::State& state)
{
    fromStep(state, [](const std::filesystem::path& input) { return VX::ConverterService::fromStep(input, {}); });
}

void fromStepAsync(benchmark::State& state)
{
    fromStep(state, convertAsync);
}

// Bytes of the input and side of the square: a small part, and a large one of a million triangles.
BENCHMARK(fromStepBlocking)->Args({400'000, 70})->Args({50'000'000, 707})->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(fromStepAsync)->Args({400'000, 70})->Args({50'000'000, 707})->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
