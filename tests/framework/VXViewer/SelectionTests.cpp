#include "UiTestScene.h"

#include <VXViewer/Selection.h>

#include <gtest/gtest.h>

namespace VX
{

class SelectionTests : public testing::Test
{
protected:
    SelectionTests()
    {
        root_->addChild(group_);
        group_->addChild(inner_);
        root_->addChild(other_);
    }

    std::shared_ptr<Object> root_ = std::make_shared<Object>();
    std::shared_ptr<Object> group_ = std::make_shared<Object>();
    std::shared_ptr<Object> inner_ = VX::Test::makeBox("Inner");
    std::shared_ptr<Object> other_ = VX::Test::makeBox("Other");
};

TEST_F(SelectionTests, ListsParentsBeforeTheirChildren)
{
    group_->setSelected(true);
    inner_->setSelected(true);
    EXPECT_EQ(selectedObjects(*root_), (std::vector<std::shared_ptr<Object>>{group_, inner_}));
}

TEST_F(SelectionTests, SelectsOneAndNothingElse)
{
    group_->setSelected(true);
    selectOnly(*root_, inner_.get());
    EXPECT_EQ(selectedObjects(*root_), (std::vector<std::shared_ptr<Object>>{inner_}));
    selectOnly(*root_, nullptr);
    EXPECT_TRUE(selectedObjects(*root_).empty());
}

TEST_F(SelectionTests, LeavesOutWhatIsBelowAnotherSelectedObject)
{
    group_->setSelected(true);
    inner_->setSelected(true);
    other_->setSelected(true);
    EXPECT_EQ(topmostSelectedObjects(*root_), (std::vector<std::shared_ptr<Object>>{group_, other_}));
}

} // namespace VX
