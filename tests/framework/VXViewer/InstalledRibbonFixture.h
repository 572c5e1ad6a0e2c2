#pragma once

#include "tests/framework/VXViewer/UiTestScene.h"
#include "tests/framework/VXViewer/history/SceneText.h"
#include "tests/support/TempDir.h"
#include "tests/support/ui/UiDriver.h"

#include <VXMesh/ObjectMesh.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerItems.h>

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VX::Test
{

/// A viewer with the ribbon as it is installed, over an empty scene.
class InstalledRibbonFixture : public testing::Test
{
protected:
    /// @param size   of the window, in pixels
    /// @param scale  of the interface in it
    explicit InstalledRibbonFixture(PixelSize size, float scale = 1)
        : session_(menu_, size, scale)
    {
    }

    ~InstalledRibbonFixture() override { RibbonSchemaHolder::reset(); }

    std::shared_ptr<ObjectMesh> addBox_(const std::string& name, const Vector3f& min = {0, 0, 0},
                                        const Vector3f& max = {1, 1, 1})
    {
        auto box = makeBox(name, min, max);
        viewer_.scene().addChild(box);
        return box;
    }

    /// Runs `edit`, which must be one step of the history; takes it back and does it again.
    void expectOneStep_(const std::function<void()>& edit)
    {
        const std::string before = sceneText(viewer_.scene());
        const std::size_t position = history_().position();
        edit();
        const std::string after = sceneText(viewer_.scene());
        EXPECT_NE(after, before);
        ASSERT_EQ(history_().position(), position + 1);
        history_().undo();
        EXPECT_EQ(sceneText(viewer_.scene()), before);
        history_().redo();
        EXPECT_EQ(sceneText(viewer_.scene()), after);
    }

    [[nodiscard]] static std::vector<std::string> namesBelow_(const Object& parent)
    {
        std::vector<std::string> names;
        for (const auto& child : parent.children())
            names.push_back(child->name());
        return names;
    }

    [[nodiscard]] std::vector<std::string> selectedNames_() const
    {
        std::vector<std::string> names;
        visitObjects(std::as_const(viewer_.scene()),
                     [&](const Object& object)
                     {
                         if (object.isSelected())
                             names.push_back(object.name());
                     });
        return names;
    }

    [[nodiscard]] HistoryStore& history_() const { return *viewer_.getGlobalHistoryStore(); }

    TempDir folder_;
    bool schema_ = addSchema_();
    std::shared_ptr<RibbonMenu> menu_ = std::make_shared<RibbonMenu>();
    ViewerSession session_;
    Viewer& viewer_ = session_.viewer();
    UiDriver driver_{session_};

private:
    static bool addSchema_()
    {
        RibbonSchemaHolder::reset();
        registerViewerItems(getViewerInstance());
        const auto added = RibbonSchemaHolder::addFile(QX_SOURCE_DIR "/resources/ribbon/viewer.json");
        EXPECT_TRUE(added) << added.error();
        return true;
    }
};

} // namespace VX::Test
