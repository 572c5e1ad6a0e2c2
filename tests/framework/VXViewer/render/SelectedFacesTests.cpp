#include "RenderFixture.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

namespace VX
{

class SelectedFacesTests : public RenderFixture
{
protected:
    static void select_(ObjectMesh& object, const std::function<bool(std::size_t)>& isSelected)
    {
        FaceSet faces(object.mesh()->triangles.size());
        for (std::size_t i = 0; i < faces.size(); ++i)
            faces.set(i, isSelected(i));
        object.setSelectedFaces(std::make_shared<const FaceSet>(std::move(faces)));
    }

    /// The selected faces are blue here, the others red.
    static bool isBlue_(const Color& color) { return color.b > color.r + 60; }

    static bool isRed_(const Color& color) { return color.r > color.b + 60; }

    std::shared_ptr<ObjectMesh> addRed_(std::shared_ptr<const Mesh> mesh)
    {
        frame_.options.selectedFaces = {0, 0, 255, 255};
        auto object = add_(std::move(mesh));
        object->setColor({255, 0, 0, 255});
        return object;
    }
};

TEST_F(SelectedFacesTests, TheyHaveTheirColorTheOthersKeepTheirs)
{
    const auto object = addRed_(Shapes::makeSquare());
    select_(*object, [](std::size_t face) { return face == 1; });
    const Image image = draw_();
    EXPECT_TRUE(isRed_(colorAt_(image, 0.5, -0.5)));
    EXPECT_TRUE(isBlue_(colorAt_(image, -0.5, 0.5)));
}

TEST_F(SelectedFacesTests, TheyLookAlikeWhetherTheirObjectIsSelectedOrNot)
{
    const auto mesh = Shapes::makeSphere(160);
    const auto object = addRed_(mesh);
    select_(*object, [](std::size_t) { return true; });
    const Image alone = draw_();
    object->setSelected(true);
    const Image both = draw_();
    // In the middle, and where the surface turns away from the eye.
    for (const double x : {0.0, 0.97})
    {
        const Color before = colorAt_(alone, x, 0);
        const Color now = colorAt_(both, x, 0);
        EXPECT_NEAR(now.r, before.r, 60) << x;
        EXPECT_TRUE(isBlue_(now)) << x;
    }
}

TEST_F(SelectedFacesTests, AChangeOfThemIsAChangeOfThePicture)
{
    const auto object = addRed_(Shapes::makeSquare());
    const Image before = draw_();
    select_(*object, [](std::size_t) { return true; });
    EXPECT_TRUE(renderer_->draw(frame_));
    EXPECT_GT(difference_(renderer_->readPixels(), before), 9000);
    object->setSelectedFaces(nullptr);
    EXPECT_EQ(difference_(draw_(), before), 0);
}

TEST_F(SelectedFacesTests, InstancesHaveSelectionsOfTheirOwn)
{
    const auto mesh = Shapes::makeSquare();
    const auto left = addRed_(mesh);
    const auto right = addRed_(mesh);
    left->setTransform(Transform(Eigen::Translation3d(-2, 0, 0)));
    right->setTransform(Transform(Eigen::Translation3d(2, 0, 0)));
    select_(*left, [](std::size_t) { return true; });
    const Image image = draw_();
    EXPECT_TRUE(isBlue_(colorAt_(image, -2, 0.5)));
    EXPECT_TRUE(isRed_(colorAt_(image, 2, 0.5)));
}

TEST_F(SelectedFacesTests, TheyShowOverColorsOfTheFaces)
{
    auto mesh = Shapes::makeSquare();
    mesh->faceColors = {{255, 0, 0, 255}, {255, 0, 0, 255}};
    const auto object = addRed_(mesh);
    select_(*object, [](std::size_t face) { return face == 0; });
    const Image image = draw_();
    EXPECT_TRUE(isBlue_(colorAt_(image, 0.5, -0.5)));
    EXPECT_TRUE(isRed_(colorAt_(image, -0.5, 0.5)));
}

TEST_F(SelectedFacesTests, TheyKeepToTheirTrianglesInLargeMeshes)
{
    const auto mesh = Shapes::makeSphere(160);
    const auto object = addRed_(mesh);
    select_(*object, [&](std::size_t face) { return mesh->points[mesh->triangles[face][0]].x() > 0; });
    const Image image = draw_();
    for (const double z : {-0.7, -0.2, 0.3, 0.6})
    {
        EXPECT_TRUE(isRed_(colorAt_(image, -0.1, z))) << z;
        EXPECT_TRUE(isBlue_(colorAt_(image, 0.1, z))) << z;
    }
}

TEST_F(SelectedFacesTests, StandInsShowThemToo)
{
    std::atomic<bool> ready = false;
    renderer_ = std::make_unique<SceneRenderer>([&] { ready = true; });
    if (!renderer_->isSoftware())
        GTEST_SKIP() << "the graphics are too fast for stand-ins";
    const auto mesh = Shapes::makeSphere(400);
    const auto object = addRed_(mesh);
    select_(*object, [&](std::size_t face) { return mesh->points[mesh->triangles[face][0]].x() > 0; });
    const Image full = draw_();
    frame_.interactive = true;
    draw_();
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!ready && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    const Image standIn = draw_();
    ASSERT_TRUE(renderer_->statistics().simplified);
    EXPECT_TRUE(isRed_(colorAt_(standIn, -0.5, 0)));
    EXPECT_TRUE(isBlue_(colorAt_(standIn, 0.5, 0)));
    EXPECT_LT(difference_(standIn, full, 40), 600);
}

} // namespace VX
