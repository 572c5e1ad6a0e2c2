// The codec of vxu files by itself, measured in bytes of the points and triangles in memory.

#include "formats/GeometryCodec.h"

#include "LargeMesh.h"

#include <span>

namespace VX
{

namespace
{

std::size_t memorySize(const Mesh& mesh)
{
    return mesh.points.size() * sizeof(Vector3f) + mesh.triangles.size() * sizeof(Triangle);
}

void encodeMesh(benchmark::State& state)
{
    const AnyGeometry geometry = largeMesh();
    for (auto _ : state)
        benchmark::DoNotOptimize(encodeGeometry(geometry));
    countBytes(state, memorySize(*largeMesh()));
}

BENCHMARK(encodeMesh)->UseRealTime()->Unit(benchmark::kMillisecond);

void decodeMesh(benchmark::State& state)
{
    const std::string bytes = encodeGeometry(largeMesh());
    for (auto _ : state)
    {
        const auto geometry = decodeGeometry(std::as_bytes(std::span(bytes)));
        if (!geometry)
            return state.SkipWithError("the codec does not read what it wrote");
    }
    countBytes(state, memorySize(*largeMesh()));
}

BENCHMARK(decodeMesh)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

} // namespace VX
