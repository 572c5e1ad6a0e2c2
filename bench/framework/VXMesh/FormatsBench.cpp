// Each format read and written: a million triangles, or their half million points in XYZ. The file is in the system's
// cache when it is read; when it is written, it reaches the disk, which is most of the time where the disk is slow.

#include "LargeMesh.h"

namespace VX
{

namespace
{

void readFile(benchmark::State& state, const char* extension)
{
    const LargeMeshFile file(extension);
    if (const auto saved = file.save(); !saved)
        return state.SkipWithError(saved.error().c_str());
    for (auto _ : state)
    {
        const auto loaded = loadObjectFromFile(file.path(), {});
        if (!loaded)
            return state.SkipWithError(loaded.error().c_str());
    }
    countBytes(state, std::filesystem::file_size(file.path()));
}

void writeFile(benchmark::State& state, const char* extension)
{
    const LargeMeshFile file(extension);
    largeMesh();
    for (auto _ : state)
    {
        if (const auto saved = file.save(); !saved)
            return state.SkipWithError(saved.error().c_str());
    }
    countBytes(state, std::filesystem::file_size(file.path()));
}

BENCHMARK_CAPTURE(readFile, vxu, ".vxu")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, stl, ".stl")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, ply, ".ply")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, obj, ".obj")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, off, ".off")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, xyz, ".xyz")->UseRealTime()->Unit(benchmark::kMillisecond);

BENCHMARK_CAPTURE(writeFile, vxu, ".vxu")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeFile, stl, ".stl")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeFile, ply, ".ply")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeFile, obj, ".obj")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeFile, off, ".off")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeFile, xyz, ".xyz")->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

} // namespace VX
