#include "tests/framework/VXViewer/UiTestScene.h"
#include "tests/support/ui/UiDriver.h"

#include <VXMesh/Config.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/RecentFiles.h>
#include <VXViewer/Viewer.h>

#include <gmock/gmock.h>

namespace VX
{

using testing::ElementsAre;
using testing::IsEmpty;

class RecentFilesTests : public testing::Test
{
protected:
    std::filesystem::path file_(const std::string& name) { return folder_.write(name, VX::Test::triangleStl()); }

    VX::Test::TempDir folder_;
    VX::Test::ViewerSession session_{nullptr};
    VX::Test::UiDriver driver_{session_};
    RecentFiles recent_;
};

TEST_F(RecentFilesTests, ListTheLastFileFirstAndEachOnce)
{
    const auto a = file_("a.stl");
    const auto b = file_("b.stl");
    recent_.add(a);
    recent_.add(b);
    EXPECT_THAT(recent_.list(), ElementsAre(b, a));
    recent_.add(a.parent_path() / "." / "a.stl");
    EXPECT_THAT(recent_.list(), ElementsAre(a, b));
}

TEST_F(RecentFilesTests, KeepTen)
{
    for (int i = 0; i < 12; ++i)
        recent_.add(file_(std::to_string(i) + ".stl"));
    EXPECT_EQ(recent_.list().size(), RecentFiles::maxCount);
    EXPECT_EQ(recent_.list().back().filename(), "2.stl");
}

TEST_F(RecentFilesTests, LeaveOutAFileThatIsGoneUntilItIsBack)
{
    const auto a = file_("a.stl");
    recent_.add(a);
    std::filesystem::remove(a);
    EXPECT_THAT(recent_.list(), IsEmpty());
    file_("a.stl");
    EXPECT_THAT(recent_.list(), ElementsAre(a));
}

TEST_F(RecentFilesTests, AreForgottenOnRequest)
{
    recent_.add(file_("a.stl"));
    recent_.clear();
    EXPECT_THAT(recent_.list(), IsEmpty());
}

TEST_F(RecentFilesTests, StayAsTheyAreInARunWithoutTraces)
{
    recent_.setRecording(false);
    recent_.add(file_("a.stl"));
    EXPECT_THAT(recent_.list(), IsEmpty());
}

TEST_F(RecentFilesTests, PutUpWithADamagedList)
{
    Json::Value list = Json::arrayValue;
    list.append(7);
    list.append(file_("a.stl").string());
    Config::instance().setJson("recentFiles", list);
    EXPECT_EQ(recent_.list().size(), 1U);
    Config::instance().setJson("recentFiles", "text");
    EXPECT_THAT(recent_.list(), IsEmpty());
}

TEST_F(RecentFilesTests, GetTheFilesThatWereOpened)
{
    Viewer& viewer = session_.viewer();
    viewer.fileOpening().setMessageHandler([](NotificationType, const std::string&) {});
    const auto a = file_("a.stl");
    viewer.openFiles({a, folder_.path() / "missing.stl"});
    ASSERT_TRUE(driver_.waitFor([&] { return viewer.fileOpening().isIdle(); }));
    EXPECT_THAT(viewer.recentFiles().list(), ElementsAre(a));
}

} // namespace VX
