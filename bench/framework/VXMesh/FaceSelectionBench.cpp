// What is done with the faces of a mesh of four million triangles.

#include "tools/BumpyTorus.h"

#include <VXMesh/FaceSelection.h>
#include <VXMesh/MeshEdit.h>
#include <VXMesh/MeshTopology.h>

#include <benchmark/benchmark.h>

namespace VX
{

namespace
{

const Mesh& hugeMesh()
{
    static const std::shared_ptr<const Mesh> mesh = makeBumpyTorus(4'000'000);
    return *mesh;
}

const MeshTopology& hugeTopology()
{
    static const MeshTopology topology(hugeMesh());
    return topology;
}

/// Every other run of a thousand faces: half of them, with a long border.
FaceSet half()
{
    FaceSet faces(hugeMesh().triangles.size());
    for (std::size_t i = 0; i < faces.size(); ++i)
        faces.set(i, i / 1000 % 2 == 0);
    return faces;
}

void deleteHalf(benchmark::State& state)
{
    const FaceSet faces = half();
    for (auto _ : state)
        benchmark::DoNotOptimize(deleteFaces(hugeMesh(), faces));
}

BENCHMARK(deleteHalf)->UseRealTime()->Unit(benchmark::kMillisecond);

void expandHalf(benchmark::State& state)
{
    const FaceSet faces = half();
    for (auto _ : state)
        benchmark::DoNotOptimize(expandFaces(hugeMesh(), faces));
}

BENCHMARK(expandHalf)->UseRealTime()->Unit(benchmark::kMillisecond);

void makeTopology(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(MeshTopology(hugeMesh()));
}

BENCHMARK(makeTopology)->UseRealTime()->Unit(benchmark::kMillisecond);

/// All of the mesh is one region.
void growWhole(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(growRegion(hugeMesh(), hugeTopology(), 0, 60));
}

BENCHMARK(growWhole)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

} // namespace VX
