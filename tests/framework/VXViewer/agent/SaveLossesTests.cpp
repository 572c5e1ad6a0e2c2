#include "agent/SaveLosses.h"

#include "tests/framework/VXViewer/UiTestScene.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectPoints.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VX
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SaveLossesTests : public testing::Test
{
protected:
    std::shared_ptr<Object> root_ = std::make_shared<Object>();
    std::shared_ptr<ObjectMesh> box_ = VX::Test::makeBox("Box");
};

TEST_F(SaveLossesTests, OneMeshIsKeptWhole)
{
    root_->addChild(box_);
    for (const char* extension : {".vxu", ".stl", ".ply", ".obj", ".off"})
        EXPECT_THAT(saveLosses(*root_, extension), IsEmpty()) << extension;
    EXPECT_THAT(saveLosses(*root_, ".xyz"), ElementsAre(HasSubstr("The triangles of meshes were left out")));
}

TEST_F(SaveLossesTests, CountsWhatIsHiddenByAnObjectAbove)
{
    box_->addChild(VX::Test::makeBox("Lid"));
    box_->setVisible(false);
    root_->addChild(box_);
    EXPECT_THAT(saveLosses(*root_, ".obj"), ElementsAre(HasSubstr("2 hidden objects were left out")));
    EXPECT_THAT(saveLosses(*root_, ".vxu"), IsEmpty());
}

TEST_F(SaveLossesTests, NamesTheGeometryThatAKindOfFileCannotHold)
{
    root_->addChild(std::make_shared<ObjectPoints>());
    root_->addChild(std::make_shared<ObjectLines>());
    root_->addChild(std::make_shared<ObjectLines>());
    EXPECT_THAT(saveLosses(*root_, ".stl"),
                ElementsAre(HasSubstr("1 point cloud was left out"), HasSubstr("2 objects of lines were left out")));
    EXPECT_THAT(saveLosses(*root_, ".ply"), ElementsAre(HasSubstr("2 objects of lines were left out")));
    EXPECT_THAT(saveLosses(*root_, ".obj"), IsEmpty());
}

TEST_F(SaveLossesTests, SaysThatObjectsBecomeOne)
{
    root_->addChild(box_);
    root_->addChild(VX::Test::makeBox("Lid"));
    EXPECT_THAT(saveLosses(*root_, ".stl"), ElementsAre(HasSubstr("became one")));
    EXPECT_THAT(saveLosses(*root_, ".obj"), IsEmpty());
}

TEST_F(SaveLossesTests, SaysThatGroupsAreLostWhereObjectsAreNot)
{
    const auto group = std::make_shared<Object>();
    group->addChild(box_);
    root_->addChild(group);
    EXPECT_THAT(saveLosses(*root_, ".obj"), ElementsAre(HasSubstr("1 group was left out")));
    EXPECT_THAT(saveLosses(*root_, ".stl"), IsEmpty());
    root_->addChild(std::make_shared<Object>());
    EXPECT_THAT(saveLosses(*root_, ".obj"), ElementsAre(HasSubstr("1 group was left out")));
}

TEST_F(SaveLossesTests, SaysThatColoursAreLost)
{
    box_->setColor({1, 2, 3, 255});
    root_->addChild(box_);
    EXPECT_THAT(saveLosses(*root_, ".obj"), ElementsAre(HasSubstr("colours")));
    EXPECT_THAT(saveLosses(*root_, ".ply"), IsEmpty());
}

} // namespace VX
