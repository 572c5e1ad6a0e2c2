#include "tests/support/ui/ViewerSession.h"

#include <VXMesh/Config.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>

#include <gtest/gtest.h>

namespace VX
{

class ViewerSettingsManagerTests : public testing::Test
{
protected:
    VX::Test::ViewerSession session_{nullptr};
    Viewer& viewer_ = session_.viewer();
    ViewerSettingsManager settings_;
};

TEST_F(ViewerSettingsManagerTests, AnswersTheDefaultWhereNothingIsStored)
{
    EXPECT_EQ(settings_.loadInt("QuickSetupVersion", 7), 7);
}

TEST_F(ViewerSettingsManagerTests, KeepsNumbersInTheConfiguration)
{
    settings_.saveInt("QuickSetupVersion", 2);
    EXPECT_EQ(settings_.loadInt("QuickSetupVersion", 0), 2);
    EXPECT_EQ(ViewerSettingsManager().loadInt("QuickSetupVersion", 0), 2);
    settings_.reset();
    EXPECT_EQ(settings_.loadInt("QuickSetupVersion", 0), 0);
}

TEST_F(ViewerSettingsManagerTests, BringsTheProjectionBack)
{
    viewer_.view().toggleProjection();
    const Projection stored = viewer_.view().camera().projection();
    settings_.saveSettings(viewer_);
    viewer_.view().toggleProjection();
    settings_.loadSettings(viewer_);
    EXPECT_EQ(viewer_.view().camera().projection(), stored);
}

TEST_F(ViewerSettingsManagerTests, PutsUpWithSettingsOfTheWrongType)
{
    Config::instance().setJson("viewer", "text");
    settings_.loadSettings(viewer_);
    EXPECT_EQ(settings_.loadInt("any", 3), 3);
    Json::Value wrong;
    wrong["orthographic"] = 1;
    wrong["window"] = Json::arrayValue;
    wrong["any"] = "text";
    Config::instance().setJson("viewer", wrong);
    const Projection before = viewer_.view().camera().projection();
    settings_.loadSettings(viewer_);
    EXPECT_EQ(viewer_.view().camera().projection(), before);
    EXPECT_EQ(settings_.loadInt("any", 3), 3);
}

} // namespace VX
