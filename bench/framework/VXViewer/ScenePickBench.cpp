// What finding the object under the cursor costs: the first time, which builds the search tree, and then.
#include "LargeScene.h"
#include "ProcessTime.h"

#include <VXMesh/ObjectPoints.h>
#include <VXViewer/ScenePicker.h>

#include <benchmark/benchmark.h>

namespace VX
{

namespace
{

ScenePicker::Request requestFor(const Object& root)
{
    ScenePicker::Request request;
    request.root = &root;
    request.size = benchPicture;
    SceneRenderer::fit(request.camera, root, {request.size});
    // On the ring rather than in its hole.
    request.pixel = request.camera.project({80, 0, 20}, request.size).value();
    return request;
}

void pick(benchmark::State& state, ScenePicker& picker, const ScenePicker::Request& request)
{
    if (!picker.pickNow(request))
        state.SkipWithError("nothing was hit");
}

std::shared_ptr<Object> meshScene(benchmark::State& state)
{
    auto root = std::make_shared<Object>();
    root->addChild(std::make_shared<ObjectMesh>(makeBumpyTorus(static_cast<std::uint32_t>(state.range(0)))));
    return root;
}

void firstPick(benchmark::State& state)
{
    const auto root = meshScene(state);
    const auto request = requestFor(*root);
    for ([[maybe_unused]] auto _ : state)
    {
        ScenePicker picker({});
        pick(state, picker, request);
    }
}

void laterPick(benchmark::State& state)
{
    const auto root = meshScene(state);
    const auto request = requestFor(*root);
    ScenePicker picker({});
    pick(state, picker, request);
    for ([[maybe_unused]] auto _ : state)
        pick(state, picker, request);
}

void pickPoint(benchmark::State& state)
{
    auto cloud = std::make_shared<PointCloud>();
    cloud->points = makeBumpyTorus(static_cast<std::uint32_t>(2 * state.range(0)))->points;
    const auto root = std::make_shared<Object>();
    root->addChild(std::make_shared<ObjectPoints>(cloud));
    const auto request = requestFor(*root);
    ScenePicker picker({});
    for ([[maybe_unused]] auto _ : state)
        pick(state, picker, request);
}

BENCHMARK(firstPick)->Arg(1'000'000)->Arg(4'000'000)->Apply(withProcessTime);
BENCHMARK(laterPick)->Arg(1'000'000)->Arg(4'000'000)->Apply(withProcessTime)->Unit(benchmark::kMicrosecond);
BENCHMARK(pickPoint)->Arg(1'000'000)->Arg(4'000'000)->Apply(withProcessTime);

} // namespace

} // namespace VX
