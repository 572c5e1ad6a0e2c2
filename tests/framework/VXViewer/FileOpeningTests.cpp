#include "UiTestScene.h"
#include "tests/support/ui/UiDriver.h"

#include <VXViewer/FileOpening.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Viewer.h>

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <new>
#include <stdexcept>

namespace VX
{

class FileOpeningTests : public testing::Test
{
protected:
    FileOpeningTests()
    {
        viewer_.fileOpening().setMessageHandler([this](NotificationType type, const std::string& text)
                                                { messages_.emplace_back(type, text); });
    }

    void openAndWait_(const std::vector<std::filesystem::path>& paths)
    {
        viewer_.openFiles(paths);
        driver_.waitFor([&] { return viewer_.fileOpening().isIdle(); });
        driver_.settle();
    }

    [[nodiscard]] std::vector<std::string> names_() const
    {
        std::vector<std::string> names;
        for (const auto& child : viewer_.scene().children())
            names.push_back(child->name());
        return names;
    }

    static tl::expected<LoadedObjects, std::string> oneBox_(const std::filesystem::path& path)
    {
        LoadedObjects loaded;
        loaded.objects.push_back(VX::Test::makeBox(path.stem().string()));
        return loaded;
    }

    VX::Test::ViewerSession session_{nullptr};
    Viewer& viewer_ = session_.viewer();
    VX::Test::UiDriver driver_{session_};
    VX::Test::TempDir folder_;
    std::vector<std::pair<NotificationType, std::string>> messages_;
};

TEST_F(FileOpeningTests, AddsWhatAFileHoldsAndShowsAllOfIt)
{
    openAndWait_({folder_.write("part.stl", VX::Test::triangleStl())});
    ASSERT_EQ(viewer_.scene().children().size(), 1U);
    EXPECT_EQ(viewer_.sceneName(), "part.stl");
    const PixelRect area = viewer_.view().area();
    for (const Vector3d& corner : {Vector3d(0, 0, 0), Vector3d(10, 0, 0), Vector3d(0, 10, 0)})
    {
        const auto pixel = viewer_.view().camera().project(corner, {area.width, area.height});
        ASSERT_TRUE(pixel);
        EXPECT_TRUE((pixel->array() > 0).all() && pixel->x() < area.width && pixel->y() < area.height);
    }
    EXPECT_TRUE(messages_.empty());
}

TEST_F(FileOpeningTests, KeepsTheOrderOfTheFilesHoweverLongEachTakes)
{
    std::promise<void> lastIsOpen;
    std::shared_future<void> wait = lastIsOpen.get_future().share();
    viewer_.setFileOpener(".box",
                          [wait](const std::filesystem::path& path, const ProgressCallback&)
                          {
                              if (path.stem() != "c")
                                  wait.wait();
                              return oneBox_(path);
                          });
    viewer_.openFiles({"a.box", "b.box", "c.box"});
    ASSERT_TRUE(driver_.waitFor([&] { return names_() == std::vector<std::string>{"c"}; }));
    lastIsOpen.set_value();
    ASSERT_TRUE(driver_.waitFor([&] { return viewer_.fileOpening().isIdle(); }));
    EXPECT_EQ(names_(), (std::vector<std::string>{"a", "b", "c"}));
}

TEST_F(FileOpeningTests, GivesAnExtensionOfAnyLetterCaseToItsOpener)
{
    viewer_.setFileOpener(".box",
                          [](const std::filesystem::path& path, const ProgressCallback&) { return oneBox_(path); });
    openAndWait_({"part.BOX"});
    EXPECT_EQ(names_(), (std::vector<std::string>{"part"}));
}

TEST_F(FileOpeningTests, NamesTheExtensionsOfTheOpenersWhereItKnowsNone)
{
    viewer_.setFileOpener(".box",
                          [](const std::filesystem::path& path, const ProgressCallback&) { return oneBox_(path); });
    openAndWait_({"part.abc"});
    ASSERT_EQ(messages_.size(), 1U);
    EXPECT_EQ(messages_.front().second, "Cannot open \"part.abc\": the format \".abc\" is unknown. Known are .box, "
                                        ".obj, .off, .ply, .stl, .vxu, .xyz.");
}

TEST_F(FileOpeningTests, ReportsAFileThatCannotBeOpenedAndOpensTheOthers)
{
    openAndWait_({folder_.path() / "missing.stl", folder_.write("part.stl", VX::Test::triangleStl())});
    EXPECT_EQ(viewer_.scene().children().size(), 1U);
    ASSERT_EQ(messages_.size(), 1U);
    EXPECT_EQ(messages_.front().first, NotificationType::Error);
    EXPECT_NE(messages_.front().second.find("missing.stl"), std::string::npos);
    EXPECT_EQ(messages_.front().second.find(folder_.path().string()), std::string::npos);
}

TEST_F(FileOpeningTests, ReportsWarningsOfAFileThatWasOpened)
{
    viewer_.setFileOpener(".box",
                          [](const std::filesystem::path& path, const ProgressCallback&)
                          {
                              auto loaded = oneBox_(path);
                              loaded->warnings.push_back("A part of \"a.box\" is missing.");
                              return loaded;
                          });
    openAndWait_({"a.box"});
    ASSERT_EQ(messages_.size(), 1U);
    EXPECT_EQ(messages_.front(), std::pair(NotificationType::Warning, std::string("A part of \"a.box\" is missing.")));
}

TEST_F(FileOpeningTests, SaysNothingWhenTheUserCancels)
{
    std::atomic<bool> running = false;
    viewer_.setFileOpener(
        ".box",
        [&](const std::filesystem::path&, const ProgressCallback& progress) -> tl::expected<LoadedObjects, std::string>
        {
            running = true;
            while (progress(0.5F))
                std::this_thread::yield();
            return tl::make_unexpected(operationCanceledText());
        });
    viewer_.openFiles({"a.box"});
    ASSERT_TRUE(driver_.waitFor([&] { return running.load(); }));
    ProgressBar::cancel(ProgressBar::tasks().front().id);
    EXPECT_TRUE(viewer_.fileOpening().isIdle());
    ProgressBar::shutdown();
    driver_.settle();
    EXPECT_TRUE(messages_.empty());
    EXPECT_TRUE(viewer_.scene().children().empty());
}

TEST_F(FileOpeningTests, ReportsAFileThatNeedsMoreMemoryThanThereIs)
{
    viewer_.setFileOpener(
        ".box", [](const std::filesystem::path&, const ProgressCallback&) -> tl::expected<LoadedObjects, std::string>
        { throw std::bad_alloc(); });
    openAndWait_({"a.box"});
    ASSERT_EQ(messages_.size(), 1U);
    EXPECT_NE(messages_.front().second.find("memory"), std::string::npos);
}

TEST_F(FileOpeningTests, ReportsWhatAnOpenerThrows)
{
    viewer_.setFileOpener(
        ".box", [](const std::filesystem::path&, const ProgressCallback&) -> tl::expected<LoadedObjects, std::string>
        { throw std::runtime_error("the lid is stuck"); });
    openAndWait_({"a.box"});
    ASSERT_EQ(messages_.size(), 1U);
    EXPECT_EQ(messages_.front().second,
              "Cannot open \"a.box\": an error came up that was not foreseen (the lid is stuck).");
}

TEST_F(FileOpeningTests, LeavesTheViewThatTheUserChose)
{
    openAndWait_({folder_.write("a.stl", VX::Test::triangleStl())});
    Camera chosen = viewer_.view().camera();
    chosen.orbit(chosen.target(), 0.5, 0);
    viewer_.view().controller().setCamera(chosen);
    openAndWait_({folder_.write("b.stl", VX::Test::triangleStl())});
    EXPECT_TRUE(viewer_.view().camera() == chosen);
}

TEST_F(FileOpeningTests, OffersEveryFormatAndOpenerInTheDialog)
{
    viewer_.setFileOpener(".step", {});
    const std::vector<FileFilter> filters = viewer_.fileOpening().dialogFilters();
    ASSERT_GE(filters.size(), 3U);
    const std::vector<std::string>& all = filters.front().extensions;
    EXPECT_NE(std::find(all.begin(), all.end(), ".step"), all.end());
    EXPECT_NE(std::find(all.begin(), all.end(), ".stl"), all.end());
    EXPECT_TRUE(filters.back().extensions.empty());
}

} // namespace VX
