// What building a frame of the whole interface costs: ribbon, panels, toolbar. Drawing it is left out.
#include <VXViewer/MainLoop.h>
#include <VXViewer/OffscreenWindow.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/UiSession.h>
#include <VXViewer/Viewer.h>

#include <benchmark/benchmark.h>

#include <memory>
#include <utility>

namespace VX
{

namespace
{

void buildRibbonFrame(benchmark::State& state)
{
    Viewer& viewer = getViewerInstance();
    viewer.reset();
    auto window = OffscreenWindow::create({1280, 800}, 1);
    if (!window)
    {
        state.SkipWithError(window.error().c_str());
        return;
    }
    const auto menu = std::make_shared<RibbonMenu>();
    viewer.setMenuPlugin(menu);
    viewer.setWindow(std::move(*window));
    viewer.startUi();
    viewer.loop().runUntilIdle();
    UiSession& ui = *viewer.ui();
    for ([[maybe_unused]] auto _ : state)
    {
        ui.beginFrame();
        benchmark::DoNotOptimize(menu->drawFrame());
        ui.endFrame();
    }
    viewer.reset();
}

BENCHMARK(buildRibbonFrame)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace VX
