#include "ToolFixture.h"

#include <VXMesh/Primitives.h>

namespace VX::Test
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SelectPrimitivesToolTests : public ToolFixture
{
protected:
    /// Middles of sides of the box from (0, 0, 0) to (1, 1, 1), and their faces.
    const Vector3d top_{0.5, 0.4, 1};
    const Vector3d front_{0.4, 0, 0.5};
    static constexpr std::size_t firstOfTop = 2;
    static constexpr std::size_t firstOfFront = 4;

    void typeTolerance_(const std::string& degrees)
    {
        driver_.press("Angle tolerance", {}, GLFW_MOD_CONTROL);
        driver_.key(GLFW_KEY_A, GLFW_MOD_CONTROL);
        driver_.type(degrees);
        driver_.key(GLFW_KEY_ENTER);
    }
};

TEST_F(SelectPrimitivesToolTests, AClickSelectsTheSideUnderTheMouse)
{
    const auto box = add_(makeBox("Box"));
    start_("Select Primitives");
    driver_.click(windowAt_(top_));
    waitForSteps_(1);
    EXPECT_THAT(selectedFaces_(*box), ElementsAre(firstOfTop, firstOfTop + 1));
    EXPECT_FALSE(box->isSelected()) << "the click is the tool's";
}

TEST_F(SelectPrimitivesToolTests, SaysThatItLooksUntilTheRegionIsFound)
{
    add_(makeBox("Box"));
    start_("Select Primitives");
    driver_.moveTo(windowAt_(top_));
    for (const bool pressed : {true, false})
        session_.window().inject(MouseButtonEvent{0, pressed, 0, windowAt_(top_), 1});
    // What the worker finds is taken in by a later turn than the one that draws after the click.
    bool told = false;
    for (int turns = 0; turns < 10 && !told; ++turns)
    {
        viewer_.loop().turn(false);
        told = driver_.shows("Looking for the region.");
    }
    EXPECT_TRUE(told);
    waitForSteps_(1);
    driver_.settle();
    EXPECT_TRUE(driver_.shows("Click a face to select its region."));
}

TEST_F(SelectPrimitivesToolTests, OneUndoBringsBackWhatWasSelected)
{
    const auto box = add_(makeBox("Box"));
    start_("Select Primitives");
    driver_.click(windowAt_(top_));
    waitForSteps_(1);
    driver_.click(windowAt_(front_));
    waitForSteps_(2);
    EXPECT_THAT(selectedFaces_(*box), ElementsAre(firstOfFront, firstOfFront + 1));
    history_().undo();
    EXPECT_THAT(selectedFaces_(*box), ElementsAre(firstOfTop, firstOfTop + 1));
    history_().undo();
    EXPECT_THAT(selectedFaces_(*box), IsEmpty());
}

TEST_F(SelectPrimitivesToolTests, ShiftAddsAndControlRemoves)
{
    const auto box = add_(makeBox("Box"));
    start_("Select Primitives");
    driver_.click(windowAt_(top_));
    waitForSteps_(1);
    driver_.click(windowAt_(front_), 0, GLFW_MOD_SHIFT);
    waitForSteps_(2);
    EXPECT_THAT(selectedFaces_(*box), SizeIs(4));
    driver_.click(windowAt_(top_), 0, GLFW_MOD_CONTROL);
    waitForSteps_(3);
    EXPECT_THAT(selectedFaces_(*box), ElementsAre(firstOfFront, firstOfFront + 1));
}

TEST_F(SelectPrimitivesToolTests, AClickSelectsFacesOfOneObjectOnly)
{
    const auto box = add_(makeBox("Box"));
    const auto other = add_(makeBox("Other", {-1.5F, 0, 0}, {-0.5F, 1, 1}));
    start_("Select Primitives");
    driver_.click(windowAt_({-1, 0.4, 1}));
    waitForSteps_(1);
    driver_.click(windowAt_(top_));
    waitForSteps_(2);
    EXPECT_THAT(selectedFaces_(*other), IsEmpty());
    EXPECT_THAT(selectedFaces_(*box), SizeIs(2));
}

TEST_F(SelectPrimitivesToolTests, AClickBesideTheObjectsSelectsNothing)
{
    const auto box = add_(makeBox("Box"));
    start_("Select Primitives");
    driver_.click(windowAt_(top_));
    waitForSteps_(1);
    driver_.click(windowAt_({0.5, 0.5, -1}));
    waitForSteps_(2);
    EXPECT_THAT(selectedFaces_(*box), IsEmpty());
}

TEST_F(SelectPrimitivesToolTests, AChangeOfTheAngleChangesTheRegionAsOneStep)
{
    // Its sides turn by 30 degrees.
    const auto prism = add_(
        std::make_shared<ObjectMesh>(std::make_shared<const Mesh>(makePrism({.radius = 1, .height = 1, .sides = 12}))));
    start_("Select Primitives");
    driver_.click(windowAt_({0, -0.95, 0}));
    waitForSteps_(1);
    EXPECT_THAT(selectedFaces_(*prism), SizeIs(2));
    typeTolerance_("40");
    EXPECT_TRUE(driver_.waitFor([&] { return selectedFaces_(*prism).size() == 24; }));
    waitForSteps_(2);
    history_().undo();
    EXPECT_THAT(selectedFaces_(*prism), SizeIs(2));
    history_().undo();
    EXPECT_THAT(selectedFaces_(*prism), IsEmpty());
}

TEST_F(SelectPrimitivesToolTests, TheAngleLeavesASelectionAloneThatWasUndone)
{
    const auto prism = add_(
        std::make_shared<ObjectMesh>(std::make_shared<const Mesh>(makePrism({.radius = 1, .height = 1, .sides = 12}))));
    start_("Select Primitives");
    driver_.click(windowAt_({0, -0.95, 0}));
    waitForSteps_(1);
    history_().undo();
    typeTolerance_("40");
    EXPECT_THAT(selectedFaces_(*prism), IsEmpty());
    EXPECT_EQ(history_().position(), 0U);
}

TEST_F(SelectPrimitivesToolTests, NothingIsUndoneWhileTheAngleIsDragged)
{
    const auto prism = add_(
        std::make_shared<ObjectMesh>(std::make_shared<const Mesh>(makePrism({.radius = 1, .height = 1, .sides = 12}))));
    start_("Select Primitives");
    driver_.click(windowAt_({0, -0.95, 0}));
    waitForSteps_(1);
    driver_.hover("Angle tolerance", "Select Primitives");
    const auto slider = driver_.find("Angle tolerance", "Select Primitives");
    ASSERT_TRUE(slider);
    const Vector2f middle(slider->min.x() + 60, (slider->min.y() + slider->max.y()) / 2);
    session_.window().inject(MouseButtonEvent{0, true, 0, middle, 1});
    EXPECT_TRUE(driver_.waitFor([&] { return selectedFaces_(*prism).size() == 24; }));
    EXPECT_FALSE(menu_->pressItem("Undo"));
    session_.window().inject(MouseButtonEvent{0, false, 0, middle, 1});
    waitForSteps_(2);
    history_().undo();
    EXPECT_THAT(selectedFaces_(*prism), SizeIs(2));
    history_().undo();
    EXPECT_THAT(selectedFaces_(*prism), IsEmpty());
}

TEST_F(SelectPrimitivesToolTests, ADragTurnsTheView)
{
    const auto box = add_(makeBox("Box"));
    start_("Select Primitives");
    const Camera before = viewer_.view().camera();
    driver_.drag(windowAt_(top_), windowAt_(top_) + Vector2f(90, 40));
    EXPECT_FALSE(viewer_.view().camera() == before);
    EXPECT_THAT(selectedFaces_(*box), IsEmpty());
}

TEST_F(SelectPrimitivesToolTests, TheMouseOverTheSceneCostsNoPicture)
{
    add_(makeBox("Box"));
    start_("Select Primitives");
    const std::uint64_t before = viewer_.view().statistics().frames;
    for (int i = 0; i < 50; ++i)
        driver_.moveTo(windowAt_({0.02 * i, 0.4, 1}));
    EXPECT_EQ(viewer_.view().statistics().frames, before);
}

TEST_F(SelectPrimitivesToolTests, EscapeEndsTheToolAndAClickSelectsObjectsAgain)
{
    const auto box = add_(makeBox("Box"));
    start_("Select Primitives");
    EXPECT_THAT(menu_->activeItems(), SizeIs(1));
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_THAT(menu_->activeItems(), IsEmpty());
    driver_.click(windowAt_(top_));
    EXPECT_TRUE(driver_.waitFor([&] { return box->isSelected(); }));
    EXPECT_THAT(selectedFaces_(*box), IsEmpty());
}

TEST_F(SelectPrimitivesToolTests, EscapeGivesADragOfTheViewUp)
{
    add_(makeBox("Box"));
    start_("Select Primitives");
    const Vector2f end = windowAt_(top_) + Vector2f(90, 40);
    session_.window().inject(MouseButtonEvent{0, true, 0, windowAt_(top_), 1});
    driver_.moveTo(end);
    driver_.key(GLFW_KEY_ESCAPE);
    session_.window().inject(MouseButtonEvent{0, false, 0, end, 1});
    driver_.settle();
    const Camera before = viewer_.view().camera();
    driver_.moveTo(end + Vector2f(60, 60));
    EXPECT_TRUE(viewer_.view().camera() == before);
}

TEST_F(SelectPrimitivesToolTests, AnotherToolForTheSceneTakesItsPlace)
{
    add_(makeBox("Box"));
    start_("Select Primitives");
    start_("Select Rectangle");
    ASSERT_THAT(menu_->activeItems(), SizeIs(1));
    EXPECT_EQ(menu_->activeItems().front()->name(), "Select Rectangle");
}

TEST_F(SelectPrimitivesToolTests, WithoutAMeshThereIsAReasonNotToStart)
{
    EXPECT_FALSE(RibbonSchemaHolder::find("Select Primitives")->item->unavailableReason().empty());
}

} // namespace VX::Test
