// What the steps of the history cost on a large mesh: doing them through their items, taking them back, doing them
// again.
#include "LargeScene.h"
#include "ProcessTime.h"

#include <VXMesh/FaceSet.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/RibbonMenuItem.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerItems.h>

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

namespace VX
{

namespace
{

/// One large mesh in the viewer, every other face of which is selected.
class EditedScene
{
public:
    explicit EditedScene(std::uint32_t triangles)
        : mesh_(std::make_shared<ObjectMesh>(makeBumpyTorus(triangles)))
    {
        registerViewerItems(viewer_);
        viewer_.scene().addChild(mesh_);
        selectHalf();
    }

    ~EditedScene()
    {
        RibbonSchemaHolder::reset();
        viewer_.reset();
    }

    EditedScene(const EditedScene&) = delete;
    EditedScene& operator=(const EditedScene&) = delete;

    void selectHalf()
    {
        auto faces = std::make_shared<FaceSet>(mesh_->mesh()->triangles.size());
        for (std::size_t face = 0; face < faces->size(); face += 2)
            faces->set(face);
        mesh_->setSelectedFaces(faces);
    }

    static void press(const char* item) { RibbonSchemaHolder::find(item)->item->press(); }

    [[nodiscard]] HistoryStore& history() const { return *viewer_.getGlobalHistoryStore(); }

private:
    Viewer& viewer_ = getViewerInstance();
    std::shared_ptr<ObjectMesh> mesh_;
};

void deleteHalfOfTheFaces(benchmark::State& state)
{
    const EditedScene scene(static_cast<std::uint32_t>(state.range(0)));
    for ([[maybe_unused]] auto _ : state)
    {
        EditedScene::press("Delete Selection");
        state.PauseTiming();
        scene.history().undo();
        scene.history().clear();
        state.ResumeTiming();
    }
}

/// @param item  the step
void undoAndRedo(benchmark::State& state, const char* item)
{
    const EditedScene scene(static_cast<std::uint32_t>(state.range(0)));
    EditedScene::press(item);
    for ([[maybe_unused]] auto _ : state)
    {
        scene.history().undo();
        scene.history().redo();
    }
}

BENCHMARK(deleteHalfOfTheFaces)->Arg(4'000'000)->Apply(withProcessTime);
BENCHMARK_CAPTURE(undoAndRedo, deletedFaces, "Delete Selection")->Arg(4'000'000)->Apply(withProcessTime);
BENCHMARK_CAPTURE(undoAndRedo, selectedFaces, "Invert Selection")->Arg(4'000'000)->Apply(withProcessTime);
BENCHMARK_CAPTURE(undoAndRedo, shading, "Flat Shading")->Arg(4'000'000)->Apply(withProcessTime);

} // namespace

} // namespace VX
