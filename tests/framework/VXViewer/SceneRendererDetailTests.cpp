#include "RenderFixture.h"

#include <VXViewer/Camera.h>

#include <algorithm>
#include <random>

namespace VX
{

class SceneRendererDetailTests : public RenderFixture
{
protected:
    /// Inside, where nobody sees it: the mesh is no solid any more and looks the same.
    static void addLooseTriangle_(Mesh& mesh)
    {
        const auto first = static_cast<std::uint32_t>(mesh.points.size());
        mesh.points.insert(mesh.points.end(), {{0, 0, 0}, {0.1F, 0, 0}, {0, 0.1F, 0}});
        mesh.triangles.emplace_back(first, first + 1, first + 2);
    }

    static std::shared_ptr<Mesh> openSphere_(std::uint32_t rings)
    {
        auto mesh = Shapes::makeSphere(rings);
        addLooseTriangle_(*mesh);
        return mesh;
    }

    std::shared_ptr<ObjectLines> addLines_(const std::shared_ptr<Object>& parent)
    {
        auto lines = std::make_shared<Lines>();
        lines->points = {{-2, -1.01F, 0}, {2, -1.01F, 0}};
        lines->segments = {{0, 1}};
        auto object = std::make_shared<ObjectLines>(lines);
        object->setColor({255, 0, 0, 255});
        parent->addChild(object);
        return object;
    }

    /// How many pixels of the column at `x` are reddish.
    int redPixelsAt_(const Image& image, double x) const
    {
        int count = 0;
        for (int y = 0; y < size.height; ++y)
        {
            const Color color = image.at(static_cast<int>(pixelAt_(x, 0).x()), y);
            count += color.r > color.b + 60 && color.r > color.g + 60 ? 1 : 0;
        }
        return count;
    }
};

// ---- what is left out

TEST_F(SceneRendererDetailTests, LeavingOutTheBackOfASolidDoesNotChangeThePicture)
{
    for (const Projection projection : {Projection::Perspective, Projection::Orthographic})
    {
        frame_.camera.setProjection(projection);
        const auto solid = add_(Shapes::makeCubeSphere(64));
        const Image culled = draw_();
        const std::uint64_t few = renderer_->statistics().triangles;
        root_->removeChild(*solid);
        const auto mesh = Shapes::makeCubeSphere(64);
        addLooseTriangle_(*mesh);
        const auto open = add_(mesh);
        // On the outline a triangle on edge may cover nothing where its neighbour behind does.
        EXPECT_LE(difference_(draw_(), culled, 0), 5);
        EXPECT_LT(few, renderer_->statistics().triangles * 9 / 10);
        root_->removeChild(*open);
    }
}

TEST_F(SceneRendererDetailTests, LeavingOutWhatIsOutsideTheViewDoesNotChangeThePicture)
{
    for (const Projection projection : {Projection::Perspective, Projection::Orthographic})
    {
        frame_.camera.setProjection(projection);
        frame_.camera.setDistance(1.5);
        frame_.camera.setTarget({0.9, 0, 0});
        const auto ordered = add_(openSphere_(200));
        const Image culled = draw_();
        const std::uint64_t few = renderer_->statistics().triangles;
        root_->removeChild(*ordered);
        // In random order every run of triangles reaches into the view.
        const auto mesh = openSphere_(200);
        std::shuffle(mesh->triangles.begin(), mesh->triangles.end(), std::mt19937(1));
        const auto shuffled = add_(mesh);
        EXPECT_EQ(difference_(draw_(), culled, 0), 0);
        EXPECT_EQ(renderer_->statistics().triangles, mesh->triangles.size());
        EXPECT_LT(few, mesh->triangles.size() * 8 / 10);
        root_->removeChild(*shuffled);
    }
}

TEST_F(SceneRendererDetailTests, FromInsideASolidItsWallsShow)
{
    frame_.camera.setProjection(Projection::Perspective);
    frame_.camera.setDistance(0.5);
    add_(Shapes::makeSphere(20));
    EXPECT_FALSE(isNear_(colorAt_(draw_(), 0, 0), background_(0), 10));
}

TEST_F(SceneRendererDetailTests, ASolidInsideOutShowsItsNearSide)
{
    auto mesh = Shapes::makeSphere(20);
    Shapes::flip(*mesh);
    add_(mesh);
    add_(Shapes::makeSquare())->setColor({0, 0, 255, 255});
    const Color color = colorAt_(draw_(), 0, 0);
    EXPECT_LT(color.b, 120) << "the blue square inside is hidden by the sphere";
}

// ---- edges, lines and points

TEST_F(SceneRendererDetailTests, SharpEdgesAreDarkLines)
{
    frame_.options.featureEdges = true;
    add_(Shapes::makeCube());
    frame_.camera.orbit(Vector3d::Zero(), 0.7, 0);
    const Image with = draw_();
    frame_.options.featureEdges = false;
    const Image without = draw_();
    // The upright edge between the two faces that show.
    const Vector2d edge = frame_.camera.project({-1, -1, 0}, size).value();
    const auto x = static_cast<int>(edge.x());
    EXPECT_LT(brightness_(with.at(x, 150)), brightness_(without.at(x, 150)) - 100);
    EXPECT_GT(difference_(with, without), 500);
    EXPECT_TRUE(isNear_(with.at(x + 10, 150), without.at(x + 10, 150)));
}

TEST_F(SceneRendererDetailTests, EdgesBehindASurfaceAreHidden)
{
    frame_.options.featureEdges = true;
    add_(Shapes::makeCube());
    const auto cover = add_(Shapes::makeSquare(-2));
    cover->setTransform(Transform(Eigen::Scaling(3.0, 1.0, 3.0)));
    const Image covered = draw_();
    EXPECT_TRUE(isNear_(colorAt_(covered, 1, 0), colorAt_(covered, 0.5, 0.2), 6));
}

TEST_F(SceneRendererDetailTests, LinesHaveTheirColorAndAWidthThatFollowsTheScale)
{
    addLines_(root_);
    const int single = redPixelsAt_(draw_(), 0.3);
    EXPECT_GE(single, 1);
    EXPECT_LE(single, 3);
    frame_.options.scale = 4;
    EXPECT_GE(redPixelsAt_(draw_(), 0.3), single + 3);
}

TEST_F(SceneRendererDetailTests, LinesOnASurfaceAreSeenInFull)
{
    frame_.options.featureEdges = true;
    add_(Shapes::makeCube());
    auto lines = std::make_shared<Lines>();
    lines->points = {{-1, -1, 0}, {1, -1, 0}};
    lines->segments = {{0, 1}};
    const auto object = std::make_shared<ObjectLines>(lines);
    object->setColor({255, 0, 0, 255});
    root_->addChild(object);
    frame_.camera.orbit(Vector3d::Zero(), 0.4, 0.9);
    const Image image = draw_();
    for (double x = -0.95; x < 1; x += 0.05)
    {
        const Vector2d pixel = frame_.camera.project({x, -1, 0}, size).value();
        bool found = false;
        for (int y = -1; y <= 1; ++y)
        {
            const Color color = image.at(static_cast<int>(pixel.x()), static_cast<int>(pixel.y()) + y);
            found |= color.r > color.b + 60;
        }
        EXPECT_TRUE(found) << x;
    }
}

TEST_F(SceneRendererDetailTests, ALineThatBeginsBehindTheEyeIsDrawnToItsEnd)
{
    auto lines = std::make_shared<Lines>();
    lines->points = {{0, -1000, -0.5F}, {0, 5, -0.5F}};
    lines->segments = {{0, 1}};
    const auto object = std::make_shared<ObjectLines>(lines);
    object->setColor({255, 0, 0, 255});
    root_->addChild(object);
    frame_.camera.setProjection(Projection::Perspective);
    const Image image = draw_();
    EXPECT_GT(redPixelsAt_(image, 0), 50);
    EXPECT_EQ(redPixelsAt_(image, 1), 0);
}

TEST_F(SceneRendererDetailTests, TheEdgesOfAPartFollowTheOption)
{
    addLines_(add_(Shapes::makeSquare()));
    frame_.options.featureEdges = false;
    EXPECT_EQ(redPixelsAt_(draw_(), 1.5), 0);
    frame_.options.featureEdges = true;
    EXPECT_GT(redPixelsAt_(draw_(), 1.5), 0);
}

TEST_F(SceneRendererDetailTests, LinesBesideAMeshAreNoEdges)
{
    add_(Shapes::makeSquare());
    addLines_(root_);
    frame_.options.featureEdges = false;
    EXPECT_GT(redPixelsAt_(draw_(), 1.5), 0);
}

TEST_F(SceneRendererDetailTests, PointsAreRoundDotsInTheirColors)
{
    auto cloud = std::make_shared<PointCloud>();
    cloud->points = {{-1, 0, 0}, {1, 0, 0}};
    cloud->colors = {{255, 0, 0, 255}, {0, 0, 255, 255}};
    root_->addChild(std::make_shared<ObjectPoints>(cloud));
    frame_.options.scale = 4;
    const Image image = draw_();
    EXPECT_GT(colorAt_(image, -1, 0).r, 200);
    EXPECT_GT(colorAt_(image, 1, 0).b, 200);
    EXPECT_TRUE(isNear_(colorAt_(image, -1.2, 0), background_(0)));
    EXPECT_TRUE(isNear_(colorAt_(image, -1 + 0.105, 0.105), background_(0.1))) << "the corner of the dot's square";
}

TEST_F(SceneRendererDetailTests, PointsWithNormalsAreLit)
{
    auto cloud = std::make_shared<PointCloud>();
    cloud->points = {{-1, 0, 0}, {1, 0, 0}};
    cloud->normals = {{0, -1, 0}, {1, 0, 0}};
    root_->addChild(std::make_shared<ObjectPoints>(cloud));
    const Image image = draw_();
    EXPECT_GT(brightness_(colorAt_(image, -1, 0)), brightness_(colorAt_(image, 1, 0)) + 60);
}

TEST_F(SceneRendererDetailTests, TheBasisHasRedGreenAndBlueAxes)
{
    add_(Shapes::makeSquare(3));
    frame_.camera.setStandardView(StandardView::Isometric);
    const Image without = draw_();
    frame_.options.globalBasis = ViewportMask(1);
    const Image with = draw_();
    EXPECT_GT(difference_(with, without), 50);
    const auto at = [&](const Vector3d& point)
    {
        const Vector2d pixel = frame_.camera.project(point, size).value();
        return with.at(static_cast<int>(pixel.x()), static_cast<int>(pixel.y()));
    };
    EXPECT_GT(at({0.3, 0, 0}).r, at({0.3, 0, 0}).b + 50);
    EXPECT_GT(at({0, 0.3, 0}).g, at({0, 0.3, 0}).r + 30);
    EXPECT_GT(at({0, 0, 0.3}).b, at({0, 0, 0.3}).r + 50);
}

TEST_F(SceneRendererDetailTests, ThePivotMarkIsSeenThroughASurfaceAndIsNoPlaceToPick)
{
    add_(Shapes::makeSquare(-2));
    frame_.pivotMark = Vector3d(0.5, 0, 0.5);
    const Image image = draw_();
    EXPECT_GT(brightness_(colorAt_(image, 0.5, 0.5)), 700);
    const auto point = renderer_->pointUnderCursor(pixelAt_(0.5, 0.5));
    ASSERT_TRUE(point);
    EXPECT_NEAR(point->y(), -2, 0.01);
}

// ---- the point under the cursor

TEST_F(SceneRendererDetailTests, ThePointUnderTheCursorLiesOnTheNearestSurface)
{
    for (const Projection projection : {Projection::Perspective, Projection::Orthographic})
    {
        frame_.camera.setProjection(projection);
        add_(Shapes::makeCube());
        draw_();
        const Vector2d pixel = frame_.camera.project({0.4, -1, 0.3}, size).value();
        const auto point = renderer_->pointUnderCursor(pixel);
        ASSERT_TRUE(point);
        EXPECT_TRUE(point->isApprox(Vector3d(0.4, -1, 0.3), 0.02)) << point->transpose();
    }
}

TEST_F(SceneRendererDetailTests, ThereIsNoPointOnTheBackground)
{
    add_(Shapes::makeCube());
    draw_();
    EXPECT_FALSE(renderer_->pointUnderCursor({10, 10}));
    EXPECT_FALSE(renderer_->pointUnderCursor({-100, 10}));
    EXPECT_FALSE(renderer_->pointUnderCursor({200, 5000}));
}

TEST_F(SceneRendererDetailTests, BeforeTheFirstPictureThereIsNoPoint)
{
    EXPECT_FALSE(renderer_->pointUnderCursor({200, 150}));
}

TEST_F(SceneRendererDetailTests, AThinLineIsFoundBesideTheCursor)
{
    addLines_(root_);
    draw_();
    const auto point = renderer_->pointUnderCursor(pixelAt_(0.5, 0) + Vector2d(0, 3));
    ASSERT_TRUE(point);
    EXPECT_NEAR(point->z(), 0, 0.03);
    EXPECT_FALSE(renderer_->pointUnderCursor(pixelAt_(0.5, 0) + Vector2d(0, 12)));
}

TEST_F(SceneRendererDetailTests, SeveralSamplesDoNotHideThePointUnderTheCursor)
{
    frame_.options.samples = 4;
    add_(Shapes::makeCube());
    draw_();
    const auto point = renderer_->pointUnderCursor(pixelAt_(0, 0));
    ASSERT_TRUE(point);
    EXPECT_NEAR(point->y(), -1, 0.01);
}

// ---- boxes and fitting

TEST_F(SceneRendererDetailTests, TheVisibleBoxLeavesOutWhatIsHidden)
{
    const auto shown = add_(Shapes::makeCube());
    const auto hidden = add_(Shapes::makeCube(), {100, 0, 0});
    hidden->setVisible(false);
    // A mesh whose child is hidden: its own box is asked for alone.
    const auto child = std::make_shared<ObjectMesh>(Shapes::makeCube({50, 0, 0}));
    child->setVisible(false);
    shown->addChild(child);
    const Box3d box = SceneRenderer::visibleBox(*root_);
    EXPECT_TRUE(box.isApprox(Box3d(Vector3d::Constant(-1), Vector3d::Constant(1)))) << box.max().transpose();
}

TEST_F(SceneRendererDetailTests, FitFillsThePictureCloserThanTheBox)
{
    const auto mesh = Shapes::makeSphere(30);
    add_(mesh);
    Camera camera = frame_.camera;
    camera.setProjection(Projection::Perspective);
    camera.setStandardView(StandardView::Isometric);
    Camera byBox = camera;
    byBox.fit(SceneRenderer::visibleBox(*root_), {size});
    SceneRenderer::fit(camera, *root_, {size});
    EXPECT_LT(camera.distance(), byBox.distance() * 0.8);
    Eigen::AlignedBox2d seen;
    for (const Vector3f& point : mesh->points)
        seen.extend(camera.project(point.cast<double>(), size).value());
    EXPECT_GT(seen.min().y(), 10);
    EXPECT_LT(seen.max().y(), 290);
    EXPECT_TRUE(seen.center().isApprox(Vector2d(200, 150), 0.02));
}

TEST_F(SceneRendererDetailTests, FitOfAnEmptySceneChangesNothing)
{
    Camera camera = frame_.camera;
    SceneRenderer::fit(camera, *root_, {size});
    EXPECT_EQ(camera, frame_.camera);
}

} // namespace VX
