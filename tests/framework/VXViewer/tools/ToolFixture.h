#pragma once

#include "tests/framework/VXViewer/UiTestScene.h"
#include "tests/support/TempDir.h"
#include "tests/support/ui/UiDriver.h"

#include <VXMesh/Object.h>
#include <VXMesh/ObjectMesh.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerItems.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace VX::Test
{

/// A ribbon with the tools for the scene. The camera looks from the front, right and above, without perspective, so
/// that three sides of a box are seen.
class ToolFixture : public testing::Test
{
protected:
    ToolFixture()
    {
        Camera camera;
        camera.setProjection(Projection::Orthographic);
        camera.setStandardView(StandardView::Isometric);
        camera.setTarget({0.5, 0.5, 0.5});
        camera.setDistance(6);
        viewer_.view().controller().setCamera(camera);
    }

    ~ToolFixture() override { RibbonSchemaHolder::reset(); }

    std::shared_ptr<ObjectMesh> add_(std::shared_ptr<ObjectMesh> object)
    {
        viewer_.scene().addChild(object);
        driver_.settle();
        return object;
    }

    void start_(const std::string& tool)
    {
        EXPECT_TRUE(menu_->pressItem(tool));
        driver_.settle();
    }

    /// Where the window shows a point of the scene.
    [[nodiscard]] Vector2f windowAt_(const Vector3d& point) const
    {
        const PixelRect& area = viewer_.view().area();
        const Vector2d pixel = viewer_.view().camera().project(point, {area.width, area.height}).value();
        return (pixel + Vector2d(area.x, area.y)).cast<float>();
    }

    [[nodiscard]] static std::vector<std::size_t> selectedFaces_(const ObjectMesh& object)
    {
        std::vector<std::size_t> faces;
        if (object.selectedFaces())
            object.selectedFaces()->forEach([&](std::size_t face) { faces.push_back(face); });
        return faces;
    }

    [[nodiscard]] HistoryStore& history_() const { return *viewer_.getGlobalHistoryStore(); }

    /// Waits for a step of the history to come.
    void waitForSteps_(std::size_t steps)
    {
        EXPECT_TRUE(driver_.waitFor([&] { return history_().position() == steps; })) << history_().position();
        driver_.settle();
    }

    TempDir folder_;
    bool schema_ = addSchema_();
    std::shared_ptr<RibbonMenu> menu_ = std::make_shared<RibbonMenu>();
    ViewerSession session_{menu_, {1200, 800}};
    Viewer& viewer_ = session_.viewer();
    UiDriver driver_{session_};

private:
    bool addSchema_()
    {
        RibbonSchemaHolder::reset();
        registerViewerItems(getViewerInstance());
        const auto added = RibbonSchemaHolder::addFile(folder_.write("tools.json", R"({ "tabs": [
            { "name": "Tools", "groups": [ { "name": "Faces", "items":
                ["Select Primitives", "Select Rectangle", "Create Simple Objects", "Undo"] } ] } ] })"));
        EXPECT_TRUE(added) << added.error();
        return true;
    }
};

} // namespace VX::Test
