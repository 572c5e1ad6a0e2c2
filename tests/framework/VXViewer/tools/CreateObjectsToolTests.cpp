#include "ToolFixture.h"

namespace VX::Test
{

using testing::IsEmpty;
using testing::SizeIs;

class CreateObjectsToolTests : public ToolFixture
{
protected:
    void typeInto_(const std::string& field, const std::string& number)
    {
        driver_.doublePress(field);
        driver_.key(GLFW_KEY_A, GLFW_MOD_CONTROL);
        driver_.type(number);
        driver_.key(GLFW_KEY_ENTER);
    }

    [[nodiscard]] std::shared_ptr<ObjectMesh> created_() const
    {
        const auto& children = viewer_.scene().children();
        return children.empty() ? nullptr : std::dynamic_pointer_cast<ObjectMesh>(children.back());
    }
};

TEST_F(CreateObjectsToolTests, PlaceMakesTheShapeAsOneStep)
{
    start_("Create Simple Objects");
    driver_.press("Place");
    ASSERT_THAT(viewer_.scene().children(), SizeIs(1));
    EXPECT_EQ(created_()->name(), "Cube");
    EXPECT_EQ(created_()->worldBox().sizes(), Vector3d(10, 10, 10));
    EXPECT_EQ(history_().position(), 1U);
    EXPECT_THAT(menu_->activeItems(), IsEmpty());
    history_().undo();
    EXPECT_THAT(viewer_.scene().children(), IsEmpty());
    history_().redo();
    EXPECT_THAT(viewer_.scene().children(), SizeIs(1));
}

TEST_F(CreateObjectsToolTests, ThePreviewIsSeenButNoPartOfTheScene)
{
    const Image before = viewer_.view().capture({300, 200});
    start_("Create Simple Objects");
    const std::uint64_t triangles = viewer_.view().statistics().triangles;
    EXPECT_GT(triangles, 0U);
    EXPECT_THAT(viewer_.scene().children(), IsEmpty());
    EXPECT_EQ(viewer_.view().capture({300, 200}).pixels.size(), before.pixels.size());
    EXPECT_EQ(viewer_.view().statistics().triangles, 0U) << "a picture of the scene is without it";
}

TEST_F(CreateObjectsToolTests, CancelLeavesNothing)
{
    start_("Create Simple Objects");
    driver_.press("Cancel");
    EXPECT_THAT(menu_->activeItems(), IsEmpty());
    EXPECT_THAT(viewer_.scene().children(), IsEmpty());
    EXPECT_EQ(history_().position(), 0U);
    EXPECT_EQ(viewer_.view().statistics().triangles, 0U);
}

TEST_F(CreateObjectsToolTests, DimensionsShowInThePreviewBeforeItIsPlaced)
{
    start_("Create Simple Objects");
    const std::uint64_t before = viewer_.view().statistics().frames;
    typeInto_("Width", "25");
    EXPECT_GT(viewer_.view().statistics().frames, before);
    typeInto_("X", "5");
    driver_.press("Place");
    ASSERT_TRUE(created_());
    EXPECT_TRUE(created_()->worldBox().sizes().isApprox(Vector3d(25, 10, 10)));
    EXPECT_NEAR(created_()->worldBox().center().x(), 5, 1e-5);
}

TEST_F(CreateObjectsToolTests, EachShapeCanBeChosen)
{
    for (const char* shape : {"Cylinder", "Sphere", "Prism", "Torus", "Arrow", "Cone", "Plane"})
    {
        start_("Create Simple Objects");
        driver_.press("Shape");
        driver_.press(shape);
        driver_.press("Place");
        ASSERT_TRUE(created_()) << shape;
        EXPECT_EQ(created_()->name(), shape);
        driver_.press("Undo");
        EXPECT_THAT(viewer_.scene().children(), IsEmpty());
    }
}

TEST_F(CreateObjectsToolTests, ATubeStaysThinnerThanItsRing)
{
    start_("Create Simple Objects");
    driver_.press("Shape");
    driver_.press("Torus");
    typeInto_("Ring Radius", "1");
    driver_.press("Place");
    ASSERT_TRUE(created_());
    const Vector3d size = created_()->worldBox().sizes();
    EXPECT_LT(size.z(), 2);
    EXPECT_LT(size.x(), 4);
}

TEST_F(CreateObjectsToolTests, TheNewObjectIsTheSelectedOne)
{
    const auto box = add_(makeBox("Box"));
    box->setSelected(true);
    start_("Create Simple Objects");
    driver_.press("Place");
    EXPECT_TRUE(created_()->isSelected());
    EXPECT_FALSE(box->isSelected());
    history_().undo();
    EXPECT_TRUE(box->isSelected());
}

TEST_F(CreateObjectsToolTests, ItsSizeSuitsTheScene)
{
    add_(makeBox("Box", {0, 0, 0}, {1000, 1000, 1000}));
    start_("Create Simple Objects");
    driver_.press("Place");
    EXPECT_NEAR(created_()->worldBox().sizes().x(), 200, 1e-3);
}

TEST_F(CreateObjectsToolTests, EscapeEndsIt)
{
    start_("Create Simple Objects");
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_THAT(menu_->activeItems(), IsEmpty());
    EXPECT_EQ(viewer_.view().statistics().triangles, 0U);
}

} // namespace VX::Test
