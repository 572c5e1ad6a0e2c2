#include "tests/framework/VXViewer/UiTestScene.h"

#include <VXViewer/HistoryStore.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/Selection.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VX
{

using testing::ElementsAre;
using testing::IsEmpty;

/// Steps, and clicks between them that are none.
class SelectionStepTests : public testing::Test
{
protected:
    std::shared_ptr<ObjectMesh> addBox_(const std::string& name)
    {
        auto box = VX::Test::makeBox(name);
        root_->addChild(box);
        return box;
    }

    void click_(const std::shared_ptr<Object>& object) { selectOnly(*root_, object.get()); }

    void deleteA_()
    {
        SceneEdit edit(store_, "Delete");
        edit.touch(root_);
        root_->removeChild(*a_);
    }

    void renameA_()
    {
        SceneEdit edit(store_, "Rename");
        edit.touch(a_);
        a_->setName("renamed");
    }

    [[nodiscard]] std::vector<std::shared_ptr<Object>> selected_() const { return selectedObjects(*root_); }

    std::shared_ptr<Object> root_ = std::make_shared<Object>();
    std::shared_ptr<ObjectMesh> a_ = addBox_("A");
    std::shared_ptr<ObjectMesh> b_ = addBox_("B");
    std::shared_ptr<ObjectMesh> c_ = addBox_("C");
    HistoryStore store_;
};

TEST_F(SelectionStepTests, ADeletedObjectThatComesBackIsSelectedAlone)
{
    click_(a_);
    deleteA_();
    click_(b_);
    store_.undo();
    EXPECT_THAT(selected_(), ElementsAre(a_));
}

TEST_F(SelectionStepTests, ADeletedObjectThatComesBackASecondTimeIsSelectedAlone)
{
    click_(a_);
    deleteA_();
    click_(b_);
    store_.undo();
    click_(c_);
    store_.redo();
    click_(b_);
    store_.undo();
    EXPECT_THAT(selected_(), ElementsAre(a_));
}

TEST_F(SelectionStepTests, TheSelectionBeforeAStepComesBackWithoutTheObjectsClickedSince)
{
    click_(a_);
    {
        SceneEdit edit(store_, "Select");
        edit.touch(b_);
        b_->setSelected(true);
    }
    click_(c_);
    store_.undo();
    EXPECT_THAT(selected_(), ElementsAre(a_));
    click_(c_);
    store_.redo();
    EXPECT_THAT(selected_(), ElementsAre(a_, b_));
}

TEST_F(SelectionStepTests, AStepThatSelectsNothingLeavesTheSelection)
{
    click_(a_);
    renameA_();
    click_(b_);
    store_.undo();
    EXPECT_THAT(selected_(), ElementsAre(b_));
    click_(c_);
    store_.redo();
    EXPECT_THAT(selected_(), ElementsAre(c_));
}

TEST_F(SelectionStepTests, AnAddedObjectThatWasClickedComesBackUnselected)
{
    std::shared_ptr<Object> added;
    {
        SceneEdit edit(store_, "Add");
        edit.touch(root_);
        added = addBox_("New");
    }
    click_(added);
    store_.undo();
    EXPECT_THAT(selected_(), IsEmpty());
    click_(b_);
    store_.redo();
    EXPECT_THAT(selected_(), ElementsAre(b_));
}

} // namespace VX
