#include "ItemsFixture.h"

#include <VXMesh/ObjectLines.h>

#include <gtest/gtest.h>

namespace VX
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SelectionItemsTests : public VX::Test::ItemsFixture
{
};

TEST_F(SelectionItemsTests, SelectsAllObjects)
{
    expectStep_("Select all");
    EXPECT_THAT(selectedNames_(), ElementsAre("A", "B", "C"));
}

TEST_F(SelectionItemsTests, SelectsAllFacesOfAMeshOfWhichSomeAreSelected)
{
    selectFaces_(*b_, {3});
    expectStep_("Select all");
    EXPECT_THAT(facesOf_(*b_), SizeIs(12));
    EXPECT_THAT(facesOf_(*a_), IsEmpty());
    EXPECT_THAT(selectedNames_(), IsEmpty());
}

TEST_F(SelectionItemsTests, InvertsTheSelectedObjects)
{
    b_->setSelected(true);
    expectStep_("Invert Selection");
    EXPECT_THAT(selectedNames_(), ElementsAre("A", "C"));
}

TEST_F(SelectionItemsTests, InvertsWhatASelectedGroupCovers)
{
    const auto group = std::make_shared<Object>();
    viewer_.scene().addChild(group);
    group->addChild(a_);
    group->setSelected(true);
    expectStep_("Invert Selection");
    EXPECT_THAT(selectedNames_(), ElementsAre("B", "C"));
}

TEST_F(SelectionItemsTests, InvertsAPartWithTheLinesOnIt)
{
    const auto edges = std::make_shared<ObjectLines>();
    edges->setName("Edges");
    a_->addChild(edges);
    b_->setSelected(true);
    expectStep_("Invert Selection");
    EXPECT_THAT(selectedNames_(), ElementsAre("A", "C"));
}

TEST_F(SelectionItemsTests, InvertsTheSelectedFaces)
{
    selectFaces_(*b_, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    expectStep_("Invert Selection");
    EXPECT_THAT(facesOf_(*b_), ElementsAre(10, 11));
}

TEST_F(SelectionItemsTests, ClearsObjectsAndFacesInOneStep)
{
    a_->setSelected(true);
    selectFaces_(*b_, {3});
    expectStep_("Clear Selections");
    EXPECT_THAT(selectedNames_(), IsEmpty());
    EXPECT_THAT(facesOf_(*b_), IsEmpty());
}

TEST_F(SelectionItemsTests, ExpandsTheSelectedFacesAndShrinksThemAgain)
{
    selectFaces_(*b_, {0});
    expectStep_("Expand Selected Faces");
    EXPECT_GT(b_->selectedFaces()->count(), 1U);
    expectStep_("Shrink selection");
    EXPECT_THAT(facesOf_(*b_), ElementsAre(0));
}

TEST_F(SelectionItemsTests, ExpandingWhatCannotGrowIsNoStep)
{
    b_->setSelectedFaces(std::make_shared<FaceSet>(12, true));
    EXPECT_TRUE(menu_->pressItem("Expand Selected Faces"));
    EXPECT_EQ(history_().position(), 0U);
}

TEST_F(SelectionItemsTests, ASelectionLeavesTheSceneSaved)
{
    expectStep_("Select all");
    EXPECT_TRUE(history_().isSaved());
}

} // namespace VX
