// What the selection of the faces in a rectangle costs when the picture is there, as it is when the mouse is released.
#include "LargeScene.h"
#include "ProcessTime.h"

#include <benchmark/benchmark.h>

namespace VX
{

namespace
{

void selectRectangle(benchmark::State& state, bool closeUp)
{
    LargeScene scene(static_cast<std::uint32_t>(state.range(0)));
    SceneRenderer renderer;
    if (closeUp)
        scene.comeClose();
    renderer.draw(scene.frame);
    const PixelRect whole{0, 0, benchPicture.width, benchPicture.height};
    std::size_t faces = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        const std::vector<VisibleFaces> visible = renderer.visibleFaces(scene.frame, whole);
        faces = visible.empty() ? 0 : visible.front().faces.count();
    }
    state.counters["faces"] = static_cast<double>(faces);
}

void selectWhole(benchmark::State& state)
{
    selectRectangle(state, false);
}

void selectCloseUp(benchmark::State& state)
{
    selectRectangle(state, true);
}

BENCHMARK(selectWhole)->Arg(1'000'000)->Arg(4'000'000)->Apply(withProcessTime);
BENCHMARK(selectCloseUp)->Arg(4'000'000)->Apply(withProcessTime);

} // namespace

} // namespace VX
