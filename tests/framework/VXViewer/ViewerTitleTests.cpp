#include "tests/support/ui/ViewerSession.h"

#include <VXMesh/SystemFacts.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerTitle.h>

#include <gtest/gtest.h>

namespace VX
{

namespace
{

class CountingTitle : public ViewerTitle
{
public:
    std::string compose() override
    {
        ++composed;
        return ViewerTitle::compose() + "!";
    }

    void change() { update_(); }

    int composed = 0;
};

} // namespace

class ViewerTitleTests : public testing::Test
{
protected:
    ViewerTitleTests()
    {
        SystemFacts facts;
        facts.version = "1.2.3.4";
        overrideSystemFacts(facts);
    }

    ~ViewerTitleTests() override { overrideSystemFacts({}); }

    VX::Test::ViewerSession session_{nullptr};
    Viewer& viewer_ = session_.viewer();
};

TEST_F(ViewerTitleTests, IsEmptyWhileTheViewerHasNoName)
{
    EXPECT_EQ(viewer_.windowTitle()->compose(), "");
}

TEST_F(ViewerTitleTests, NamesTheApplicationItsVersionAndTheScene)
{
    viewer_.setApplicationName("Quorvix");
    EXPECT_EQ(session_.window().title(), "Quorvix 1.2.3.4");
    viewer_.setSceneName("part.step");
    EXPECT_EQ(session_.window().title(), "part.step - Quorvix 1.2.3.4");
}

TEST_F(ViewerTitleTests, IsComposedByTheObjectThatTookItsPlace)
{
    viewer_.setApplicationName("Quorvix");
    const auto title = std::make_shared<CountingTitle>();
    viewer_.setWindowTitle(title);
    EXPECT_EQ(session_.window().title(), "Quorvix 1.2.3.4!");
    const int before = title->composed;
    title->change();
    EXPECT_EQ(title->composed, before + 1);
}

TEST_F(ViewerTitleTests, AnObjectThatIsNotTheViewersChangesNothing)
{
    const auto title = std::make_shared<CountingTitle>();
    title->change();
    EXPECT_EQ(title->composed, 0);
}

} // namespace VX
