#include "RenderFixture.h"

#include <VXViewer/SceneRenderer.h>

#include <epoxy/gl.h>

namespace VX
{

class SceneRendererTests : public RenderFixture
{
};

TEST_F(SceneRendererTests, AnEmptySceneIsTheGradient)
{
    const Image image = draw_();
    EXPECT_EQ(image.size, size);
    EXPECT_TRUE(isNear_(image.at(10, 0), frame_.options.backgroundTop, 1));
    EXPECT_TRUE(isNear_(image.at(390, 299), frame_.options.backgroundBottom, 1));
    EXPECT_TRUE(isNear_(image.at(200, 150), background_(0), 1));
}

TEST_F(SceneRendererTests, WithoutARootTheGradientIsDrawnToo)
{
    frame_.root = nullptr;
    EXPECT_TRUE(isNear_(colorAt_(draw_(), 0, 0), background_(0), 1));
}

TEST_F(SceneRendererTests, AMeshCoversItsPlaceOnly)
{
    add_(Shapes::makeSquare());
    const Image image = draw_();
    EXPECT_GT(brightness_(colorAt_(image, 0.95, 0.95)), 300);
    EXPECT_GT(brightness_(colorAt_(image, -0.95, -0.95)), 300);
    EXPECT_TRUE(isNear_(colorAt_(image, 1.1, 0), background_(0)));
    EXPECT_TRUE(isNear_(colorAt_(image, 0, 1.1), background_(1.1)));
}

TEST_F(SceneRendererTests, TheNearerObjectHidesTheFartherWhateverTheirOrder)
{
    for (const bool nearFirst : {true, false})
    {
        root_ = std::make_shared<Object>();
        frame_.root = root_.get();
        const auto first = add_(Shapes::makeSquare(nearFirst ? -1.0F : 1.0F));
        const auto second = add_(Shapes::makeSquare(nearFirst ? 1.0F : -1.0F));
        (nearFirst ? first : second)->setColor({255, 0, 0, 255});
        (nearFirst ? second : first)->setColor({0, 0, 255, 255});
        const Color color = colorAt_(draw_(), 0, 0);
        EXPECT_GT(color.r, color.b + 100) << nearFirst;
    }
}

TEST_F(SceneRendererTests, TheObjectsColorShows)
{
    add_(Shapes::makeSquare())->setColor({40, 200, 80, 255});
    const Color color = colorAt_(draw_(), 0, 0);
    EXPECT_GT(color.g, color.r + 80);
    EXPECT_GT(color.g, color.b + 60);
}

TEST_F(SceneRendererTests, AColorChangeIsAChangeOfThePicture)
{
    const auto object = add_(Shapes::makeSquare());
    const Image before = draw_();
    object->setColor({255, 0, 0, 255});
    EXPECT_GT(difference_(draw_(), before), 9000);
}

TEST_F(SceneRendererTests, VertexColorsBlendBetweenThePoints)
{
    auto mesh = Shapes::makeSquare();
    mesh->vertexColors = {{255, 0, 0, 255}, {0, 0, 255, 255}, {0, 0, 255, 255}, {255, 0, 0, 255}};
    add_(mesh);
    const Image image = draw_();
    const Color left = colorAt_(image, -0.9, 0);
    const Color middle = colorAt_(image, 0, 0);
    const Color right = colorAt_(image, 0.9, 0);
    EXPECT_GT(left.r, left.b + 80);
    EXPECT_GT(right.b, right.r + 80);
    EXPECT_NEAR(middle.r, middle.b, 20);
}

TEST_F(SceneRendererTests, FaceColorsBelongToTheirTriangles)
{
    auto mesh = Shapes::makeSquare();
    mesh->faceColors = {{255, 0, 0, 255}, {0, 0, 255, 255}};
    add_(mesh);
    const Image image = draw_();
    EXPECT_GT(colorAt_(image, 0.5, -0.5).r, colorAt_(image, 0.5, -0.5).b + 80);
    EXPECT_GT(colorAt_(image, -0.5, 0.5).b, colorAt_(image, -0.5, 0.5).r + 80);
}

TEST_F(SceneRendererTests, FaceColorsKeepToTheirTrianglesInLargeMeshes)
{
    // The colour tells the side of the sphere; parts of it are left out of the drawing.
    auto mesh = Shapes::makeSphere(160);
    ASSERT_GT(mesh->triangles.size(), 100000U);
    for (const Triangle& t : mesh->triangles)
    {
        const float x = mesh->points[t[0]].x() + mesh->points[t[1]].x() + mesh->points[t[2]].x();
        mesh->faceColors.push_back(x < 0 ? Color{255, 0, 0, 255} : Color{0, 0, 255, 255});
    }
    add_(mesh);
    const Image image = draw_();
    for (double z = -0.8; z <= 0.8; z += 0.1)
    {
        for (const double x : {0.05, 0.2, 0.4})
        {
            EXPECT_GT(colorAt_(image, -x, z).r, colorAt_(image, -x, z).b + 60) << x << " " << z;
            EXPECT_GT(colorAt_(image, x, z).b, colorAt_(image, x, z).r + 60) << x << " " << z;
        }
    }
}

TEST_F(SceneRendererTests, FlatShadingShowsTheTrianglesSmoothShadingTheForm)
{
    const auto object = add_(Shapes::makeSphere(8));
    const Image smooth = draw_();
    object->setFlatShaded(true);
    const Image flat = draw_();
    // Along a line over the sphere a smooth surface changes at almost every pixel, a flat one at a few edges.
    const auto changes = [](const Image& image)
    {
        int count = 0;
        for (int x = 165; x < 235; ++x)
            count += brightness_(image.at(x, 160)) != brightness_(image.at(x + 1, 160)) ? 1 : 0;
        return count;
    };
    EXPECT_GT(changes(smooth), 40);
    EXPECT_LT(changes(flat), 12);
}

TEST_F(SceneRendererTests, TheBackOfASurfaceLooksDifferent)
{
    const auto front = add_(Shapes::makeSquare());
    const Color outside = colorAt_(draw_(), 0, 0);
    root_->removeChild(*front);
    auto turned = Shapes::makeSquare();
    Shapes::flip(*turned);
    add_(turned);
    const Color inside = colorAt_(draw_(), 0, 0);
    EXPECT_GT(brightness_(outside), brightness_(inside) + 100);
    EXPECT_GT(inside.r, inside.b + 15);
    EXPECT_FALSE(isNear_(inside, background_(0), 20));
}

TEST_F(SceneRendererTests, ASelectedObjectIsSeenAtAGlance)
{
    const auto object = add_(Shapes::makeSquare());
    const Color before = colorAt_(draw_(), 0, 0);
    object->setSelected(true);
    const Color after = colorAt_(draw_(), 0, 0);
    EXPECT_GT(after.r, after.b + 60);
    EXPECT_FALSE(isNear_(before, after, 40));
}

TEST_F(SceneRendererTests, WhatIsBelowASelectedObjectIsSelectedToo)
{
    const auto object = add_(Shapes::makeSquare());
    const Color before = colorAt_(draw_(), 0, 0);
    root_->setSelected(true);
    EXPECT_FALSE(isNear_(before, colorAt_(draw_(), 0, 0), 40));
}

TEST_F(SceneRendererTests, AHiddenObjectIsNotDrawn)
{
    const auto object = add_(Shapes::makeSquare());
    object->setVisible(false);
    EXPECT_TRUE(isNear_(colorAt_(draw_(), 0, 0), background_(0)));
}

TEST_F(SceneRendererTests, AnObjectShowsInItsViewportsOnly)
{
    const auto object = add_(Shapes::makeSquare());
    object->setVisibilityMask(ViewportMask(2));
    EXPECT_TRUE(isNear_(colorAt_(draw_(), 0, 0), background_(0)));
    frame_.options.viewport = ViewportMask(2);
    EXPECT_FALSE(isNear_(colorAt_(draw_(), 0, 0), background_(0)));
}

TEST_F(SceneRendererTests, InstancesOfOneMeshAreDrawnAtTheirPlaces)
{
    const auto mesh = Shapes::makeSquare();
    add_(mesh, {-2, 0, 0});
    add_(mesh, {2, 0, 1});
    const Image image = draw_();
    EXPECT_GT(brightness_(colorAt_(image, -2, 0)), 300);
    EXPECT_GT(brightness_(colorAt_(image, 2, 1)), 300);
    EXPECT_TRUE(isNear_(colorAt_(image, 0, 0), background_(0)));
}

TEST_F(SceneRendererTests, TransformsOfParentsCount)
{
    const auto group = std::make_shared<Object>();
    group->setTransform(Transform(Eigen::Translation3d(2, 0, 0)));
    root_->addChild(group);
    const auto object = std::make_shared<ObjectMesh>(Shapes::makeSquare());
    object->setTransform(Transform(Eigen::Translation3d(0, 0, 1.5)));
    group->addChild(object);
    EXPECT_GT(brightness_(colorAt_(draw_(), 2, 1.5)), 300);
}

TEST_F(SceneRendererTests, AMirroredSolidShowsItsOutside)
{
    const auto object = add_(Shapes::makeCube());
    const Image before = draw_();
    object->setTransform(Transform(Eigen::Scaling(-1.0, 1.0, 1.0)));
    EXPECT_EQ(difference_(draw_(), before), 0);
}

TEST_F(SceneRendererTests, APictureFarFromTheOriginIsTheSame)
{
    frame_.options.featureEdges = true;
    frame_.camera.setProjection(Projection::Perspective);
    frame_.camera.setStandardView(StandardView::Isometric);
    const auto object = add_(Shapes::makeSphere(20));
    const auto cube = add_(Shapes::makeCube(), {1.5, 0, 0});
    const Image atOrigin = draw_();
    const Vector3d far(1e7, -2e7, 5e6);
    for (const auto& item : {object, cube})
        item->setTransform(Eigen::Translation3d(far) * item->transform());
    frame_.camera.setTarget(frame_.camera.target() + far);
    EXPECT_LT(difference_(draw_(), atOrigin, 8), 20);
}

TEST_F(SceneRendererTests, PerspectiveAndOrthographicShowTheTargetsPlaneInTheSameSize)
{
    add_(Shapes::makeSquare());
    const Image orthographic = draw_();
    frame_.camera.setProjection(Projection::Perspective);
    const Image perspective = draw_();
    for (const double x : {-1.1, -0.9, 0.9, 1.1})
    {
        const bool covered = brightness_(colorAt_(orthographic, x, 0)) > 300;
        EXPECT_EQ(covered, std::abs(x) < 1);
        EXPECT_EQ(covered, brightness_(colorAt_(perspective, x, 0)) > 300) << x;
    }
}

TEST_F(SceneRendererTests, SeveralSamplesSmoothTheOutline)
{
    const auto square = add_(Shapes::makeSquare());
    square->setTransform(Transform(Eigen::AngleAxisd(0.3, Vector3d::UnitY())));
    const auto shades = [&]
    {
        const Image image = draw_();
        int between = 0;
        for (int y = 0; y < size.height; ++y)
        {
            for (int x = 0; x < size.width; ++x)
                between += brightness_(image.at(x, y)) > 230 && brightness_(image.at(x, y)) < 450 ? 1 : 0;
        }
        return between;
    };
    const int single = shades();
    frame_.options.samples = 4;
    EXPECT_GT(shades(), single + 50);
}

TEST_F(SceneRendererTests, AnImpossibleNumberOfSamplesIsClamped)
{
    add_(Shapes::makeSquare());
    frame_.options.samples = 1000;
    EXPECT_GT(brightness_(colorAt_(draw_(), 0, 0)), 300);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(SceneRendererTests, DrawingLeavesNoError)
{
    frame_.options.featureEdges = true;
    frame_.options.globalBasis = ViewportMask(1);
    frame_.pivotMark = Vector3d(0, 0, 0);
    add_(Shapes::makeCube());
    add_(std::make_shared<Mesh>());
    add_(nullptr);
    draw_();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(SceneRendererTests, ANewSizeIsDrawnAnew)
{
    add_(Shapes::makeSquare());
    draw_();
    frame_.size = {100, 80};
    const Image image = draw_();
    EXPECT_EQ(image.size, (PixelSize{100, 80}));
    EXPECT_EQ(image.pixels.size(), 8000U);
    EXPECT_GT(brightness_(image.at(50, 40)), 300);
}

TEST_F(SceneRendererTests, AnEmptySizeDrawsNothing)
{
    frame_.size = {0, 300};
    EXPECT_FALSE(renderer_->draw(frame_));
    EXPECT_TRUE(renderer_->readPixels().isEmpty());
}

TEST_F(SceneRendererTests, BlitCopiesThePictureToItsPlace)
{
    add_(Shapes::makeSquare());
    frame_.size = {100, 100};
    const Image image = draw_();
    glBindFramebuffer(GL_FRAMEBUFFER, window_->defaultFramebuffer());
    glClearColor(0, 1, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    renderer_->blit(window_->defaultFramebuffer(), 30, 20);
    const auto at = [](int x, int y)
    {
        Color color;
        glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, &color);
        return color;
    };
    EXPECT_EQ(at(29, 50), (Color{0, 255, 0, 255}));
    EXPECT_EQ(at(30, 20), image.at(0, 99));
    EXPECT_EQ(at(80, 70), image.at(50, 49));
    EXPECT_EQ(at(131, 50), (Color{0, 255, 0, 255}));
}

// ---- the cached picture

TEST_F(SceneRendererTests, NothingIsDrawnWhileNothingChanges)
{
    add_(Shapes::makeSquare());
    EXPECT_TRUE(renderer_->draw(frame_));
    EXPECT_FALSE(renderer_->draw(frame_));
    frame_.interactive = true;
    EXPECT_FALSE(renderer_->draw(frame_)) << "a small scene looks the same while it moves";
    EXPECT_EQ(renderer_->statistics().frames, 1U);
}

TEST_F(SceneRendererTests, EveryChangeIsDrawn)
{
    const auto object = add_(Shapes::makeSquare());
    renderer_->draw(frame_);
    const auto drawsAfter = [&](const char* what)
    {
        EXPECT_TRUE(renderer_->draw(frame_)) << what;
        EXPECT_FALSE(renderer_->draw(frame_)) << what;
    };
    object->setSelected(true);
    drawsAfter("selection");
    object->setVisible(false);
    drawsAfter("visibility");
    object->setVisible(true);
    drawsAfter("visibility again");
    object->setTransform(Transform(Eigen::Translation3d(1, 0, 0)));
    drawsAfter("transform");
    object->setMesh(Shapes::makeCube());
    drawsAfter("geometry");
    root_->removeChild(*object);
    drawsAfter("removal");
    frame_.camera.orbit(Vector3d::Zero(), 0.1, 0);
    drawsAfter("camera");
    frame_.options.backgroundTop = {1, 2, 3, 255};
    drawsAfter("options");
    frame_.pivotMark = Vector3d::Zero();
    drawsAfter("pivot");
    renderer_->invalidate();
    drawsAfter("invalidate");
}

} // namespace VX
