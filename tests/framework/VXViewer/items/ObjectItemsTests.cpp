#include "ItemsFixture.h"

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

namespace VX
{

using testing::ElementsAre;
using testing::IsEmpty;

class ObjectItemsTests : public VX::Test::ItemsFixture
{
};

TEST_F(ObjectItemsTests, DeletesTheSelectedObjects)
{
    a_->setSelected(true);
    c_->setSelected(true);
    expectStep_("Delete Selection");
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("B"));
}

TEST_F(ObjectItemsTests, DeletesAnObjectBelowAnotherSelectedOneWithIt)
{
    a_->addChild(b_);
    a_->setSelected(true);
    b_->setSelected(true);
    expectStep_("Delete Selection");
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("C"));
}

TEST_F(ObjectItemsTests, DeletesTheSelectedFacesWhereThereAreSome)
{
    a_->setSelected(true);
    selectFaces_(*b_, {0, 1});
    expectStep_("Delete Selection");
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("A", "B", "C"));
    EXPECT_EQ(b_->mesh()->triangles.size(), 10U);
    EXPECT_THAT(facesOf_(*b_), IsEmpty());
}

TEST_F(ObjectItemsTests, LeavesTheOtherInstancesOfAMeshWhole)
{
    c_->setMesh(b_->mesh());
    selectFaces_(*b_, {0});
    expectStep_("Delete Selection");
    EXPECT_EQ(c_->mesh()->triangles.size(), 12U);
}

TEST_F(ObjectItemsTests, TakesAnObjectAwayOfWhichNoFaceIsLeft)
{
    b_->setSelectedFaces(std::make_shared<FaceSet>(12, true));
    expectStep_("Delete Selection");
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("A", "C"));
}

TEST_F(ObjectItemsTests, KeepsAnObjectWithoutFacesThatOthersAreBelow)
{
    b_->addChild(c_);
    b_->setSelectedFaces(std::make_shared<FaceSet>(12, true));
    expectStep_("Delete Selection");
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("A", "B"));
    EXPECT_TRUE(b_->mesh()->triangles.empty());
}

TEST_F(ObjectItemsTests, DuplicatesEachSelectedObjectBesideIt)
{
    a_->setSelected(true);
    c_->setSelected(true);
    expectStep_("Duplicate");
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("A", "A 2", "B", "C", "C 2"));
    EXPECT_THAT(selectedNames_(), ElementsAre("A 2", "C 2"));
}

TEST_F(ObjectItemsTests, ACopySharesTheGeometry)
{
    a_->setSelected(true);
    expectStep_("Duplicate");
    const auto copy = std::dynamic_pointer_cast<ObjectMesh>(viewer_.scene().children()[1]);
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->mesh(), a_->mesh());
}

TEST_F(ObjectItemsTests, NumbersCopiesOn)
{
    a_->setName("Part 9");
    b_->setName("Part 10");
    a_->setSelected(true);
    expectStep_("Duplicate");
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("Part 9", "Part 11", "Part 10", "C"));
}

TEST_F(ObjectItemsTests, GroupsTheSelectedObjectsWhereTheFirstOfThemWas)
{
    b_->setSelected(true);
    c_->setSelected(true);
    expectStep_("Group");
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("A", "Group"));
    EXPECT_THAT(namesBelow_(*viewer_.scene().children()[1]), ElementsAre("B", "C"));
    EXPECT_THAT(selectedNames_(), ElementsAre("Group"));
}

TEST_F(ObjectItemsTests, GroupedObjectsStayWhereTheyAreInTheScene)
{
    a_->setTransform(Transform(Eigen::Translation3d(1, 2, 3)));
    a_->addChild(b_);
    b_->setTransform(Transform(Eigen::Translation3d(10, 0, 0)));
    b_->setSelected(true);
    c_->setSelected(true);
    expectStep_("Group");
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("Group", "A"));
    EXPECT_THAT(namesBelow_(*viewer_.scene().children()[0]), ElementsAre("B", "C"));
    EXPECT_TRUE(b_->worldTransform().translation().isApprox(Vector3d(11, 2, 3)));
}

TEST_F(ObjectItemsTests, RenamesTheSelectedObjectInTheList)
{
    b_->setSelected(true);
    driver_.settle();
    EXPECT_TRUE(menu_->pressItem("Rename"));
    driver_.settle();
    driver_.type("Wheel");
    driver_.key(GLFW_KEY_ENTER);
    driver_.settle();
    EXPECT_EQ(b_->name(), "Wheel");
    ASSERT_EQ(history_().position(), 1U);
    history_().undo();
    EXPECT_EQ(b_->name(), "B");
}

TEST_F(ObjectItemsTests, HidesTheSelectedObjects)
{
    b_->setSelected(true);
    expectStep_("Hide");
    EXPECT_TRUE(a_->isVisible());
    EXPECT_FALSE(b_->isVisible());
}

TEST_F(ObjectItemsTests, ShowsAllThatIsHidden)
{
    a_->addChild(b_);
    a_->setVisible(false);
    b_->setVisible(false);
    expectStep_("Show All");
    EXPECT_TRUE(a_->isVisible());
    EXPECT_TRUE(b_->isVisible());
}

TEST_F(ObjectItemsTests, IsolatesTheSelectedObjectsWithWhatIsAboveAndBelow)
{
    const auto below = addBox_("Below");
    const auto beside = addBox_("Beside");
    a_->addChild(b_);
    a_->addChild(beside);
    b_->addChild(below);
    a_->setVisible(false);
    b_->setSelected(true);
    expectStep_("Isolate");
    EXPECT_TRUE(a_->isVisible());
    EXPECT_TRUE(b_->isVisible());
    EXPECT_TRUE(below->isVisible());
    EXPECT_FALSE(beside->isVisible());
    EXPECT_FALSE(c_->isVisible());
}

TEST_F(ObjectItemsTests, ShadesTheSelectedMeshesFlatOrSmooth)
{
    b_->setSelected(true);
    expectStep_("Flat Shading");
    EXPECT_TRUE(b_->isFlatShaded());
    EXPECT_FALSE(a_->isFlatShaded());
    EXPECT_TRUE(item_("Flat Shading").isActive());
    expectStep_("Smooth Shading");
    EXPECT_FALSE(b_->isFlatShaded());
    EXPECT_TRUE(item_("Smooth Shading").isActive());
}

TEST_F(ObjectItemsTests, ShadesAllMeshesWhereNoneIsSelected)
{
    expectStep_("Flat Shading");
    EXPECT_TRUE(a_->isFlatShaded() && b_->isFlatShaded() && c_->isFlatShaded());
}

TEST_F(ObjectItemsTests, IsNoStepWhereNothingChanges)
{
    EXPECT_TRUE(menu_->pressItem("Smooth Shading"));
    EXPECT_EQ(history_().position(), 0U);
}

TEST_F(ObjectItemsTests, DeletesTheSelectedObjectsWhereTheSelectedFacesAreHidden)
{
    a_->setSelected(true);
    selectFaces_(*b_, {0, 1});
    b_->setVisible(false);
    expectStep_("Delete Selection");
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("B", "C"));
    EXPECT_EQ(b_->mesh()->triangles.size(), 12U);
}

TEST_F(ObjectItemsTests, LeavesTheSelectedFacesBelowAHiddenObject)
{
    a_->addChild(b_);
    a_->setVisible(false);
    selectFaces_(*b_, {0, 1});
    selectFaces_(*c_, {0});
    expectStep_("Delete Selection");
    EXPECT_EQ(b_->mesh()->triangles.size(), 12U);
    EXPECT_EQ(c_->mesh()->triangles.size(), 11U);
}

TEST_F(ObjectItemsTests, NumbersCopiesOfObjectsWithTheSameNameOneAfterAnother)
{
    b_->setName("A");
    a_->setSelected(true);
    b_->setSelected(true);
    c_->setName("A 3");
    expectStep_("Duplicate");
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("A", "A 2", "A", "A 4", "A 3"));
}

} // namespace VX
