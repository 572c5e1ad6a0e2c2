#pragma once

#include "tests/framework/VXViewer/UiTestScene.h"
#include "tests/support/ui/UiDriver.h"

#include <VXMesh/ObjectFile.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/SceneFiles.h>
#include <VXViewer/Viewer.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace VX::Test
{

/// A viewer with a menu, and files to open and save.
class SceneFilesFixture : public testing::Test
{
protected:
    void open_(const std::filesystem::path& path)
    {
        viewer_.openFiles({path});
        ASSERT_TRUE(driver_.waitFor([&] { return viewer_.fileOpening().isIdle(); }));
    }

    /// A scene file of one box.
    std::filesystem::path sceneFile_(const std::string& name)
    {
        Object root;
        root.addChild(makeBox("Box"));
        const std::filesystem::path path = folder_.path() / name;
        EXPECT_TRUE(saveObjectToFile(root, path, {}));
        return path;
    }

    void renameFirst_(const std::string& name)
    {
        SceneEdit edit(*viewer_.getGlobalHistoryStore(), "Rename");
        edit.touch(viewer_.scene().children().front());
        viewer_.scene().children().front()->setName(name);
    }

    /// Types `path` into the file dialog.
    void chooseFile_(const std::filesystem::path& path)
    {
        driver_.settle();
        ASSERT_TRUE(UiTree::instance().hasWindow("File Dialog"));
        driver_.type(path.string());
        driver_.press("Save", "File Dialog");
        ASSERT_TRUE(driver_.waitFor([&] { return !files_().isSaving(); }));
        driver_.settle();
    }

    [[nodiscard]] SceneFiles& files_() const { return menu_->sceneFiles(); }

    /// The names of the top-level objects of a file.
    static std::vector<std::string> namesIn_(const std::filesystem::path& path)
    {
        std::vector<std::string> names;
        const auto loaded = loadObjectFromFile(path, {});
        if (!loaded)
            return {loaded.error()};
        for (const std::shared_ptr<Object>& object : loaded->objects)
            names.push_back(object->name());
        return names;
    }

    TempDir folder_;
    std::shared_ptr<ImGuiMenu> menu_ = std::make_shared<ImGuiMenu>();
    ViewerSession session_{menu_};
    Viewer& viewer_ = session_.viewer();
    UiDriver driver_{session_};
};

} // namespace VX::Test
