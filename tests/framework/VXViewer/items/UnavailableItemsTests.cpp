#include "ItemsFixture.h"

#include <gtest/gtest.h>

namespace VX
{

struct Unavailable
{
    const char* item;
    const char* reason;
};

/// Items of an empty scene.
class EmptySceneTests : public VX::Test::ItemsFixture, public testing::WithParamInterface<Unavailable>
{
protected:
    EmptySceneTests() { viewer_.scene().setChildren({}); }
};

TEST_P(EmptySceneTests, SaysWhyItCannotBePressed)
{
    EXPECT_FALSE(menu_->pressItem(GetParam().item));
    EXPECT_EQ(item_(GetParam().item).unavailableReason(), GetParam().reason);
    EXPECT_EQ(history_().position(), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Items, EmptySceneTests,
    testing::Values(Unavailable{"Undo", "There is nothing to undo."}, Unavailable{"Redo", "There is nothing to redo."},
                    Unavailable{"Save", "The scene is empty."}, Unavailable{"Save Scene As", "The scene is empty."},
                    Unavailable{"Select all", "The scene is empty."},
                    Unavailable{"Invert Selection", "The scene is empty."}, Unavailable{"Fit", "The scene is empty."},
                    Unavailable{"Flat Shading", "There is no mesh in the scene."},
                    Unavailable{"Smooth Shading", "There is no mesh in the scene."},
                    Unavailable{"Select Rectangle", "There is no mesh in the scene."}));

/// Items of a scene in which nothing is selected.
class NothingSelectedTests : public VX::Test::ItemsFixture, public testing::WithParamInterface<Unavailable>
{
};

TEST_P(NothingSelectedTests, SaysWhyItCannotBePressed)
{
    EXPECT_FALSE(menu_->pressItem(GetParam().item));
    EXPECT_EQ(item_(GetParam().item).unavailableReason(), GetParam().reason);
    EXPECT_EQ(history_().position(), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Items, NothingSelectedTests,
    testing::Values(
        Unavailable{"Delete Selection", "Nothing is selected."},
        Unavailable{"Clear Selections", "Nothing is selected."}, Unavailable{"Save", "Everything is saved."},
        Unavailable{"Save selected", "No object is selected."}, Unavailable{"Duplicate", "No object is selected."},
        Unavailable{"Group", "No object is selected."}, Unavailable{"Rename", "No object is selected."},
        Unavailable{"Hide", "No object is selected."}, Unavailable{"Isolate", "No object is selected."},
        Unavailable{"Fit Selected", "No object is selected."}, Unavailable{"Object Color", "No object is selected."},
        Unavailable{"Show All", "Nothing is hidden."}, Unavailable{"Expand Selected Faces", "No faces are selected."},
        Unavailable{"Shrink selection", "No faces are selected."}));

using UnavailableItemsTests = VX::Test::ItemsFixture;

TEST_F(UnavailableItemsTests, SeveralObjectsCannotBeRenamed)
{
    a_->setSelected(true);
    b_->setSelected(true);
    EXPECT_EQ(item_("Rename").unavailableReason(), "Several objects are selected. Select the one to rename.");
}

TEST_F(UnavailableItemsTests, AnEmptyGroupHasNoColor)
{
    const auto group = std::make_shared<Object>();
    viewer_.scene().addChild(group);
    group->setSelected(true);
    EXPECT_EQ(item_("Object Color").unavailableReason(), "Nothing that is selected has a color.");
    group->addChild(a_);
    EXPECT_EQ(item_("Object Color").unavailableReason(), "");
}

TEST_F(UnavailableItemsTests, WhatIsHiddenCannotBeHidden)
{
    a_->setSelected(true);
    a_->setVisible(false);
    EXPECT_EQ(item_("Hide").unavailableReason(), "What is selected is hidden already.");
}

TEST_F(UnavailableItemsTests, NothingIsUndoneWhileAStepIsUnfinished)
{
    a_->setSelected(true);
    EXPECT_TRUE(menu_->pressItem("Hide"));
    const HistoryScope scope(history_(), "Scope");
    EXPECT_EQ(item_("Undo").unavailableReason(), "Another step is not finished yet.");
}

} // namespace VX
