// What agents wait for: a tool that only reads, on a viewer without a window that has nothing to do, and a picture
// beside the frame that it is made of. The way through the server is not in it.
#include <VXMcp/Tool.h>
#include <VXMesh/ObjectMesh.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/OffscreenWindow.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Viewer.h>

#include <benchmark/benchmark.h>

#include <QuietCommand.h>
#include <agent/AgentToolList.h>
#include <tools/BumpyTorus.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <utility>

namespace VX
{

namespace
{

/// A hidden viewer over one mesh.
class HiddenViewer
{
public:
    explicit HiddenViewer(std::uint32_t triangles)
    {
        viewer.reset();
        viewer.setMenuPlugin(std::make_shared<RibbonMenu>());
        viewer.setWindow(OffscreenWindow::create({1280, 800}, 1).value());
        viewer.startUi();
        viewer.scene().addChild(std::make_shared<ObjectMesh>(makeBumpyTorus(triangles)));
        viewer.loop().runUntilIdle();
        viewer.view().fitAll(false);
        viewer.loop().runUntilIdle();
    }

    ~HiddenViewer() { viewer.reset(); }

    HiddenViewer(const HiddenViewer&) = delete;
    HiddenViewer& operator=(const HiddenViewer&) = delete;

    void call(const std::string& name, const Json::Value& arguments)
    {
        std::atomic<bool> answered = false;
        std::ranges::find(tools_, name, &Mcp::Tool::name)
            ->run(std::make_shared<Mcp::ToolCall>(arguments),
                  [&](Mcp::ToolResult result)
                  {
                      benchmark::DoNotOptimize(result);
                      answered = true;
                      appendQuietCommand([] {});
                  });
        while (!answered)
            viewer.loop().turn(true);
    }

    Viewer& viewer = getViewerInstance();

private:
    std::vector<Mcp::Tool> tools_ = makeAgentTools(viewer);
};

void readByTool(benchmark::State& state)
{
    HiddenViewer hidden(1000);
    for ([[maybe_unused]] auto _ : state)
        hidden.call("scene.list", Json::Value(Json::objectValue));
}

BENCHMARK(readByTool)->Unit(benchmark::kMicrosecond);

constexpr std::uint32_t manyTriangles = 1000000;

Camera turned(const Viewer& viewer, int step)
{
    Camera camera = viewer.view().camera();
    camera.orbit(camera.target(), 0.01 * step, 0);
    return camera;
}

void takeScreenshot(benchmark::State& state)
{
    HiddenViewer hidden(manyTriangles);
    Json::Value arguments(Json::objectValue);
    int step = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        const Vector3d eye = turned(hidden.viewer, ++step).eye();
        for (Json::ArrayIndex i = 0; i < 3; ++i)
            arguments["camera"]["eye"][i] = eye[i];
        hidden.call("viewer.captureScreenshot", arguments);
    }
}

BENCHMARK(takeScreenshot)->Unit(benchmark::kMillisecond);

void drawItsFrame(benchmark::State& state)
{
    HiddenViewer hidden(manyTriangles);
    int step = 0;
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(
            hidden.viewer.view().take({.size = {1000, 640}, .camera = turned(hidden.viewer, ++step)}));
}

BENCHMARK(drawItsFrame)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace VX
