// What the machine can do at most: other figures are held against these.

#include <VXMesh/MappedFile.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace
{

// Larger than every cache.
constexpr std::size_t size = std::size_t{256} << 20U;

void countBytes(benchmark::State& state)
{
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(size));
}

void copyMemory(benchmark::State& state)
{
    const std::vector<std::byte> source(size, std::byte{1});
    std::vector<std::byte> target(size);
    for (auto _ : state)
    {
        std::memcpy(target.data(), source.data(), size);
        benchmark::ClobberMemory();
    }
    countBytes(state);
}

BENCHMARK(copyMemory)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(copyMemory)->Threads(2)->UseRealTime()->Unit(benchmark::kMillisecond);

// What a new allocation costs that is written once, page faults included.
void fillNewMemory(benchmark::State& state)
{
    for (auto _ : state)
    {
        std::vector<std::byte> target(size, std::byte{1});
        benchmark::DoNotOptimize(target.data());
    }
    countBytes(state);
}

BENCHMARK(fillNewMemory)->UseRealTime()->Unit(benchmark::kMillisecond);

// A file that the system has in its cache, just written.
class CachedFile
{
public:
    CachedFile()
    {
        const std::string content(size, 'x');
        std::ofstream(path_, std::ios::binary) << content;
    }

    ~CachedFile()
    {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    CachedFile(const CachedFile&) = delete;
    CachedFile& operator=(const CachedFile&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_ =
        std::filesystem::temp_directory_path() / ("quorvix-bench-" + std::to_string(std::random_device()()));
};

void readCachedFile(benchmark::State& state)
{
    const CachedFile file;
    std::vector<char> buffer(std::size_t{1} << 20U);
    for (auto _ : state)
    {
        std::FILE* stream = std::fopen(file.path().c_str(), "rb");
        std::setvbuf(stream, nullptr, _IONBF, 0);
        while (std::fread(buffer.data(), 1, buffer.size(), stream) == buffer.size())
            benchmark::DoNotOptimize(buffer.data());
        std::fclose(stream);
    }
    countBytes(state);
}

BENCHMARK(readCachedFile)->UseRealTime()->Unit(benchmark::kMillisecond);

// Every page of a mapped file looked at by one thread, as the readers of the formats do with several.
void touchMappedFile(benchmark::State& state)
{
    const CachedFile file;
    for (auto _ : state)
    {
        const auto mapped = VX::MappedFile::open(file.path());
        std::uint64_t sum = 0;
        for (std::size_t i = 0; mapped && i < mapped->bytes().size(); i += sizeof(sum))
        {
            std::uint64_t word = 0;
            std::memcpy(&word, mapped->bytes().data() + i, sizeof(word));
            sum += word;
        }
        benchmark::DoNotOptimize(sum);
    }
    countBytes(state);
}

BENCHMARK(touchMappedFile)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
