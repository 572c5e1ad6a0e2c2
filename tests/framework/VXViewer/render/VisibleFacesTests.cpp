#include "RenderFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace VX
{

using testing::IsEmpty;
using testing::SizeIs;

class VisibleFacesTests : public RenderFixture
{
protected:
    /// What is seen between these places, as the scene's x and z.
    std::vector<VisibleFaces> between_(double x0, double z0, double x1, double z1)
    {
        const Vector2d first = pixelAt_(x0, z1);
        const Vector2d last = pixelAt_(x1, z0);
        return renderer_->visibleFaces(frame_, {static_cast<int>(first.x()), static_cast<int>(first.y()),
                                                static_cast<int>(last.x() - first.x()),
                                                static_cast<int>(last.y() - first.y())});
    }

    std::vector<VisibleFaces> all_() { return between_(-4, -3, 4, 3); }

    static std::vector<std::size_t> facesOf_(const VisibleFaces& visible)
    {
        std::vector<std::size_t> faces;
        visible.faces.forEach([&](std::size_t face) { faces.push_back(face); });
        return faces;
    }
};

TEST_F(VisibleFacesTests, OfACubeTheSideTowardsTheViewer)
{
    const auto cube = add_(Shapes::makeCube());
    const auto visible = all_();
    ASSERT_THAT(visible, SizeIs(1));
    EXPECT_EQ(visible.front().object, cube.get());
    EXPECT_THAT(facesOf_(visible.front()), testing::ElementsAre(4, 5));
}

TEST_F(VisibleFacesTests, NothingWhereNothingIs)
{
    EXPECT_THAT(all_(), IsEmpty());
    add_(Shapes::makeCube());
    EXPECT_THAT(between_(2, 1, 3, 2), IsEmpty());
    EXPECT_THAT(renderer_->visibleFaces(frame_, {-50, -50, 40, 40}), IsEmpty());
    EXPECT_THAT(renderer_->visibleFaces(frame_, {100, 100, 0, 10}), IsEmpty());
}

TEST_F(VisibleFacesTests, OnlyTheFacesThatReachIntoTheRectangle)
{
    add_(Shapes::makeSquare());
    const auto visible = between_(0.5, -0.9, 0.9, -0.5);
    ASSERT_THAT(visible, SizeIs(1));
    EXPECT_THAT(facesOf_(visible.front()), testing::ElementsAre(0));
}

TEST_F(VisibleFacesTests, NotWhatSomethingElseHides)
{
    add_(Shapes::makeCube(Vector3f::Zero(), 0.5F), {0, 2, 0});
    const auto front = add_(Shapes::makeSquare());
    const auto visible = all_();
    ASSERT_THAT(visible, SizeIs(1));
    EXPECT_EQ(visible.front().object, front.get());
}

TEST_F(VisibleFacesTests, WhatIsPartlyHidden)
{
    add_(Shapes::makeSquare(2), {1, 0, 0});
    add_(Shapes::makeSquare());
    EXPECT_THAT(all_(), SizeIs(2));
    EXPECT_THAT(between_(-0.9, -0.9, 0.9, 0.9), SizeIs(1)) << "there is only the near one";
}

TEST_F(VisibleFacesTests, BacksOfAnOpenSurfaceToo)
{
    auto square = Shapes::makeSquare();
    Shapes::flip(*square);
    add_(square);
    ASSERT_THAT(all_(), SizeIs(1));
    EXPECT_EQ(all_().front().faces.count(), 2U);
}

TEST_F(VisibleFacesTests, AMirroredSolidShowsItsFront)
{
    const auto cube = add_(Shapes::makeCube());
    Transform mirror = Transform::Identity();
    mirror.linear().diagonal() << -1, 1, 1;
    cube->setTransform(mirror);
    ASSERT_THAT(all_(), SizeIs(1));
    EXPECT_THAT(facesOf_(all_().front()), testing::ElementsAre(4, 5));
}

TEST_F(VisibleFacesTests, FacesSmallerThanAPixelHaveNoHoles)
{
    for (const Projection projection : {Projection::Orthographic, Projection::Perspective})
    {
        frame_.camera.setProjection(projection);
        const auto mesh = Shapes::makeSphere(500);
        root_ = std::make_shared<Object>();
        frame_.root = root_.get();
        add_(mesh);
        const auto visible = all_();
        ASSERT_THAT(visible, SizeIs(1));
        // Not at the rim, where it is a matter of opinion, and not on the far side.
        std::size_t missed = 0;
        std::size_t wrong = 0;
        for (std::size_t i = 0; i < mesh->triangles.size(); ++i)
        {
            const Triangle& t = mesh->triangles[i];
            const float towards = -std::min({mesh->points[t[0]].y(), mesh->points[t[1]].y(), mesh->points[t[2]].y()});
            missed += towards > 0.35F && !visible.front().faces.test(i) ? 1 : 0;
            wrong += towards < 0.0F && visible.front().faces.test(i) ? 1 : 0;
        }
        EXPECT_EQ(missed, 0U);
        EXPECT_EQ(wrong, 0U);
    }
}

TEST_F(VisibleFacesTests, ASurfaceThatReachesBehindTheViewer)
{
    frame_.camera.setProjection(Projection::Perspective);
    auto floor = std::make_shared<Mesh>();
    floor->points = {{-500, -500, -1}, {500, -500, -1}, {500, 500, -1}, {-500, 500, -1}};
    floor->triangles = {{0, 1, 2}, {0, 2, 3}};
    add_(floor);
    ASSERT_THAT(between_(-3, -2.5, 3, -1), SizeIs(1));
    EXPECT_EQ(between_(-3, -2.5, 3, -1).front().faces.count(), 2U);
    EXPECT_THAT(between_(-3, 1, 3, 2.5), IsEmpty());
}

TEST_F(VisibleFacesTests, AreThoseOfTheFullDetailEvenWhileTheViewMoves)
{
    add_(Shapes::makeSphere(400));
    const auto atRest = all_();
    frame_.interactive = true;
    const auto moving = all_();
    ASSERT_THAT(moving, SizeIs(1));
    EXPECT_EQ(moving.front().faces, atRest.front().faces);
}

} // namespace VX
