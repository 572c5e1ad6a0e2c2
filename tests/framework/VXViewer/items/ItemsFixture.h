#pragma once

#include "tests/framework/VXViewer/UiTestScene.h"
#include "tests/framework/VXViewer/history/SceneText.h"
#include "tests/support/TempDir.h"
#include "tests/support/ui/UiDriver.h"

#include <VXMesh/ObjectMesh.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/RibbonMenuItem.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerItems.h>

#include <gmock/gmock.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace VX::Test
{

/// The ribbon as it is installed, over a scene of the boxes A, B and C.
class ItemsFixture : public testing::Test
{
protected:
    /// @param size   of the window, in pixels
    /// @param scale  of the interface in it
    explicit ItemsFixture(PixelSize size = {1200, 800}, float scale = 1)
        : session_(menu_, size, scale)
    {
    }

    ~ItemsFixture() override { RibbonSchemaHolder::reset(); }

    std::shared_ptr<ObjectMesh> addBox_(const std::string& name)
    {
        auto box = makeBox(name);
        viewer_.scene().addChild(box);
        return box;
    }

    [[nodiscard]] static RibbonMenuItem& item_(const std::string& name)
    {
        return *RibbonSchemaHolder::find(name)->item;
    }

    /// Presses `name`, which must be one step of the history; takes it back and does it again.
    void expectStep_(const std::string& name)
    {
        const std::string before = sceneText(viewer_.scene());
        const std::size_t position = history_().position();
        EXPECT_TRUE(menu_->pressItem(name)) << item_(name).unavailableReason();
        const std::string after = sceneText(viewer_.scene());
        EXPECT_NE(after, before);
        ASSERT_EQ(history_().position(), position + 1);
        history_().undo();
        EXPECT_EQ(sceneText(viewer_.scene()), before);
        history_().redo();
        EXPECT_EQ(sceneText(viewer_.scene()), after);
    }

    static void selectFaces_(ObjectMesh& mesh, std::initializer_list<std::size_t> faces)
    {
        auto set = std::make_shared<FaceSet>(mesh.mesh()->triangles.size());
        for (const std::size_t face : faces)
            set->set(face);
        mesh.setSelectedFaces(set);
    }

    [[nodiscard]] static std::vector<std::size_t> facesOf_(const ObjectMesh& mesh)
    {
        std::vector<std::size_t> faces;
        if (mesh.selectedFaces())
            mesh.selectedFaces()->forEach([&](std::size_t face) { faces.push_back(face); });
        return faces;
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
    std::shared_ptr<ObjectMesh> a_ = addBox_("A");
    std::shared_ptr<ObjectMesh> b_ = addBox_("B");
    std::shared_ptr<ObjectMesh> c_ = addBox_("C");

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
