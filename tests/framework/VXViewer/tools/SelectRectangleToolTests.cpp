#include "ToolFixture.h"

namespace VX::Test
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SelectRectangleToolTests : public ToolFixture
{
protected:
    /// From beside the box from (0, 0, 0) to (1, 1, 1) to its other side.
    void dragOverAll_(int mods = 0)
    {
        const Vector2f middle = windowAt_({0.5, 0.5, 0.5});
        driver_.drag(middle + Vector2f(240, -240), middle + Vector2f(-240, 240), 0, mods);
    }

    [[nodiscard]] static int difference_(const Image& a, const Image& b)
    {
        int count = 0;
        for (std::size_t i = 0; i < a.pixels.size(); ++i)
            count += a.pixels[i] == b.pixels[i] ? 0 : 1;
        return count;
    }
};

TEST_F(SelectRectangleToolTests, SelectsTheFacesThatAreSeenInIt)
{
    const auto box = add_(makeBox("Box"));
    start_("Select Rectangle");
    dragOverAll_();
    EXPECT_THAT(selectedFaces_(*box), ElementsAre(2, 3, 4, 5, 10, 11)) << "above, in front and on the right";
    EXPECT_EQ(history_().position(), 1U);
    history_().undo();
    EXPECT_THAT(selectedFaces_(*box), IsEmpty());
}

TEST_F(SelectRectangleToolTests, ReachesIntoFacesThatItCutsOnly)
{
    const auto box = add_(makeBox("Box"));
    start_("Select Rectangle");
    driver_.drag(windowAt_({0.4, 0.4, 1}), windowAt_({0.6, 0.6, 1}) + Vector2f(0, 3));
    EXPECT_THAT(selectedFaces_(*box), ElementsAre(2, 3));
}

TEST_F(SelectRectangleToolTests, SelectsFacesOfAllObjects)
{
    const auto box = add_(makeBox("Box"));
    const auto other = add_(makeBox("Other", {-0.5F, 0, 0}, {-0.1F, 0.4F, 0.4F}));
    start_("Select Rectangle");
    dragOverAll_();
    EXPECT_THAT(selectedFaces_(*box), SizeIs(6));
    EXPECT_FALSE(selectedFaces_(*other).empty());
    EXPECT_EQ(history_().position(), 1U);
}

TEST_F(SelectRectangleToolTests, ShiftAddsAndControlRemoves)
{
    const auto box = add_(makeBox("Box"));
    start_("Select Rectangle");
    dragOverAll_();
    driver_.drag(windowAt_({0.4, 0, 0.5}), windowAt_({0.5, 0, 0.4}), 0, GLFW_MOD_CONTROL);
    EXPECT_THAT(selectedFaces_(*box), ElementsAre(2, 3, 10, 11));
    driver_.drag(windowAt_({0.4, 0, 0.5}), windowAt_({0.5, 0, 0.4}), 0, GLFW_MOD_SHIFT);
    EXPECT_THAT(selectedFaces_(*box), ElementsAre(2, 3, 4, 5, 10, 11));
}

TEST_F(SelectRectangleToolTests, AClickSelectsTheFaceUnderTheMouse)
{
    const auto box = add_(makeBox("Box"));
    start_("Select Rectangle");
    driver_.click(windowAt_({0.3, 0.2, 1}));
    EXPECT_THAT(selectedFaces_(*box), SizeIs(1));
}

TEST_F(SelectRectangleToolTests, AnEmptyRectangleClearsTheSelection)
{
    const auto box = add_(makeBox("Box"));
    start_("Select Rectangle");
    dragOverAll_();
    const Vector2f beside = windowAt_({0.5, 0.5, 0.5}) + Vector2f(220, 200);
    driver_.drag(beside, beside + Vector2f(20, 20));
    EXPECT_THAT(selectedFaces_(*box), IsEmpty());
}

TEST_F(SelectRectangleToolTests, IsDrawnWhileTheMouseIsDragged)
{
    add_(makeBox("Box"));
    start_("Select Rectangle");
    const Vector2f from = windowAt_({0, 0, 1.5});
    driver_.moveTo(from + Vector2f(100, 60));
    const Image before = viewer_.loop().captureWindow();
    const std::uint64_t pictures = viewer_.view().statistics().frames;
    session_.window().inject(MouseButtonEvent{0, true, 0, from, 1});
    driver_.moveTo(from + Vector2f(100, 60));
    EXPECT_GT(difference_(viewer_.loop().captureWindow(), before), 5000);
    EXPECT_EQ(viewer_.view().statistics().frames, pictures) << "the scene is not drawn for it";
}

TEST_F(SelectRectangleToolTests, EscapeGivesADragUp)
{
    const auto box = add_(makeBox("Box"));
    start_("Select Rectangle");
    const Vector2f middle = windowAt_({0.5, 0.5, 0.5});
    session_.window().inject(MouseButtonEvent{0, true, 0, middle + Vector2f(240, -240), 1});
    driver_.moveTo(middle + Vector2f(-240, 240));
    driver_.key(GLFW_KEY_ESCAPE);
    session_.window().inject(MouseButtonEvent{0, false, 0, middle + Vector2f(-240, 240), 1});
    driver_.settle();
    EXPECT_THAT(selectedFaces_(*box), IsEmpty());
    EXPECT_THAT(menu_->activeItems(), IsEmpty());
}

TEST_F(SelectRectangleToolTests, TheOtherButtonsMoveTheView)
{
    const auto box = add_(makeBox("Box"));
    start_("Select Rectangle");
    const Camera before = viewer_.view().camera();
    const Vector2f middle = windowAt_({0.5, 0.5, 0.5});
    driver_.drag(middle, middle + Vector2f(60, 30), GLFW_MOUSE_BUTTON_MIDDLE);
    EXPECT_FALSE(viewer_.view().camera() == before);
    EXPECT_THAT(selectedFaces_(*box), IsEmpty());
}

} // namespace VX::Test
