#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ribbon/RibbonFit.h>

namespace VX
{

using testing::Each;
using testing::ElementsAre;
using Form = RibbonGroupForm;

constexpr RibbonGroupWidths group{100, 80, 60, 50, 60};

TEST(RibbonFit, LeavesGroupsAsTheyAreWhereThereIsRoom)
{
    EXPECT_THAT(fitRibbonGroups({group, group}, 200), Each(Form::Full));
}

TEST(RibbonFit, TakesOneStepFromTheRight)
{
    EXPECT_THAT(fitRibbonGroups({group, group}, 190), ElementsAre(Form::Full, Form::Small));
}

TEST(RibbonFit, TakesASecondStepOnlyWhenAllHaveTakenTheFirst)
{
    EXPECT_THAT(fitRibbonGroups({group, group}, 160), ElementsAre(Form::Small, Form::Small));
    EXPECT_THAT(fitRibbonGroups({group, group}, 140), ElementsAre(Form::Small, Form::Icons));
    EXPECT_THAT(fitRibbonGroups({group, group}, 0), Each(Form::DropDown));
}

TEST(RibbonFit, GivesBackWhatIsLeftOver)
{
    const RibbonGroupWidths wide{300, 200, 100, 50, 100};
    const RibbonGroupWidths narrow{60, 50, 40, 30, 40};
    EXPECT_THAT(fitRibbonGroups({wide, narrow, narrow}, 230), ElementsAre(Form::Icons, Form::Full, Form::Full));
    EXPECT_THAT(fitRibbonGroups({wide, narrow, narrow}, 205), ElementsAre(Form::Icons, Form::Full, Form::Icons));
}

TEST(RibbonFit, LeavesOutAStepThatSavesNothing)
{
    const RibbonGroupWidths wideSmall{100, 120, 60, 70, 60};
    EXPECT_THAT(fitRibbonGroups({wideSmall}, 90), ElementsAre(Form::Icons));
    EXPECT_THAT(fitRibbonGroups({wideSmall}, 10), ElementsAre(Form::Icons));
}

TEST(RibbonFit, LeavesOutNamesOnlyWhereNoButtonsSaveMore)
{
    const RibbonGroupWidths wideName{100, 80, 60, 70, 40};
    EXPECT_THAT(fitRibbonGroups({wideName, wideName}, 120), Each(Form::Icons));
    EXPECT_THAT(fitRibbonGroups({group, wideName}, 95), ElementsAre(Form::DropDown, Form::Bare));
}

TEST(RibbonFit, AcceptsNoGroupsAtAll)
{
    EXPECT_TRUE(fitRibbonGroups({}, 100).empty());
}

} // namespace VX
