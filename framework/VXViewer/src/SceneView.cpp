#include <VXMesh/Object.h>
#include <VXViewer/Clock.h>
#include <VXViewer/ColorTheme.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/CornerControllerObject.h>
#include <VXViewer/ScenePicker.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Selection.h>
#include <VXViewer/Viewer.h>

#include <GLFW/glfw3.h>

#include <utility>

namespace VX
{

SceneView::SceneView(std::shared_ptr<Object> root)
    : root_(std::move(root))
    , cornerController_(std::make_unique<CornerControllerObject>())
    , controller_([this](const Vector2d& pixel) { return pointUnderCursor_(pixel); })
{
    controller_.setFitter([this](Camera& camera) { SceneRenderer::fit(camera, *root_, fitArea(), options_.viewport); });
    takeThemeColors_();
    themeConnection_ = ColorTheme::onChanged([this] { takeThemeColors_(); });
}

SceneView::~SceneView() = default;

void SceneView::takeThemeColors_()
{
    options_.selectedFaces = ColorTheme::selectedFaces();
    if (!followsThemeBackground_)
        return;
    options_.backgroundTop = ColorTheme::viewportTop();
    options_.backgroundBottom = ColorTheme::viewportBottom();
}

void SceneView::setBackground(Color top, Color bottom)
{
    followsThemeBackground_ = false;
    options_.backgroundTop = top;
    options_.backgroundBottom = bottom;
}

void SceneView::followThemeBackground()
{
    followsThemeBackground_ = true;
    takeThemeColors_();
}

void SceneView::startGraphics()
{
    // A stand-in that is ready, and a pick that was made, want a new frame.
    renderer_ = std::make_unique<SceneRenderer>([] { getViewerInstance().postEmptyEvent(); });
    picker_ = std::make_unique<ScenePicker>([](std::function<void()> command)
                                            { CommandLoop::appendCommand(std::move(command)); });
}

void SceneView::stopGraphics()
{
    picker_.reset();
    renderer_.reset();
    cornerController_ = std::make_unique<CornerControllerObject>();
}

void SceneView::setArea(const PixelRect& area, float scale, int coveredTop)
{
    area_ = area;
    scale_ = scale;
    options_.scale = scale;
    coveredTop_ = coveredTop;
    controller_.setViewport(size_(), coveredTop);
}

bool SceneView::isOnCube(const Vector2f& position) const
{
    return cornerController_->partAt(toView_(position), controller_.camera(), size_(), scale_).has_value();
}

bool SceneView::contains(const Vector2f& position) const
{
    const Vector2d pixel = toView_(position);
    return pixel.x() >= 0 && pixel.y() >= 0 && pixel.x() < area_.width && pixel.y() < area_.height;
}

const Box3d& SceneView::box() const
{
    if (boxRevision_ != root_->revision())
    {
        box_ = SceneRenderer::visibleBox(*root_, options_.viewport);
        boxRevision_ = root_->revision();
    }
    return box_;
}

void SceneView::updateBox_()
{
    controller_.setSceneBox(box());
}

void SceneView::fitAll(bool animated)
{
    updateBox_();
    if (animated)
    {
        controller_.fitScene(monotonicSeconds());
        return;
    }
    Camera camera = controller_.camera();
    SceneRenderer::fit(camera, *root_, fitArea(), options_.viewport);
    controller_.setCamera(camera);
}

void SceneView::fit(const std::vector<std::shared_ptr<Object>>& objects)
{
    Box3d box;
    for (const std::shared_ptr<Object>& object : objects)
        box.extend(object->worldBox());
    controller_.fit(box, monotonicSeconds());
}

void SceneView::showFrom(StandardView view)
{
    updateBox_();
    controller_.turnTo(Camera::standardRotation(view), monotonicSeconds());
}

void SceneView::toggleProjection()
{
    controller_.toggleProjection();
}

bool SceneView::handle(const MouseButtonEvent& event)
{
    const Vector2d pixel = toView_(event.position);
    const double now = monotonicSeconds();
    updateBox_();
    if (event.pressed)
    {
        const bool onCube = event.button == GLFW_MOUSE_BUTTON_LEFT &&
                            cornerController_->click(pixel, controller_, size_(), scale_, now);
        dragging_ = !onCube;
        if (onCube)
            return true;
    }
    else if (!std::exchange(dragging_, false))
    {
        return false;
    }
    MouseButtonEvent inView = event;
    inView.position = pixel.cast<float>();
    const bool used = controller_.handle(inView, now);
    if (!event.pressed && controller_.wasClick())
        select_(pixel, event.mods);
    if (!event.pressed && controller_.wasContextClick())
        requestContext_(pixel, event.position);
    return used;
}

bool SceneView::handle(const MouseMoveEvent& event)
{
    MouseMoveEvent inView = event;
    inView.position = toView_(event.position).cast<float>();
    // A drag may follow.
    if (renderer_)
        renderer_->prepareStandIns();
    const bool highlighted =
        !controller_.isDragging() &&
        cornerController_->hover(inView.position.cast<double>(), controller_.camera(), size_(), scale_);
    return controller_.handle(inView, monotonicSeconds()) || highlighted;
}

void SceneView::endHover()
{
    cornerController_->endHover();
}

bool SceneView::handle(const ScrollEvent& event)
{
    ScrollEvent inView = event;
    inView.position = toView_(event.position).cast<float>();
    updateBox_();
    return controller_.handle(inView, monotonicSeconds());
}

bool SceneView::handle(const KeyEvent& event)
{
    updateBox_();
    return controller_.handle(event, monotonicSeconds());
}

void SceneView::cancelDrag()
{
    dragging_ = false;
    controller_.cancelDrag();
}

bool SceneView::animate()
{
    controller_.update(monotonicSeconds());
    return controller_.isAnimating();
}

std::optional<double> SceneView::secondsToChange() const
{
    const double now = monotonicSeconds();
    const std::optional<double> rest = controller_.restTime(now);
    return rest ? std::optional(*rest - now) : std::nullopt;
}

bool SceneView::isOutdated() const
{
    return renderer_ && (shownRevision_ != root_->revision() || !(shownOptions_ == options_) || !isPreviewShown_() ||
                         !(shownCamera_ == controller_.camera()) || controller_.isAnimating() ||
                         (shownMoving_ && !controller_.isMoving(monotonicSeconds())));
}

void SceneView::draw(const Window& window)
{
    if (!renderer_ || size_().isEmpty())
        return;
    const SceneFrame frame = frame_();
    renderer_->draw(frame);
    tookOther_ = false;
    shownMoving_ = frame.interactive;
    renderer_->blit(window.defaultFramebuffer(), area_.x, window.framebufferSize().height - area_.y - area_.height);
    cornerController_->draw(controller_.camera(), size_(), scale_, options_.viewport);
    shownRevision_ = root_->revision();
    shownCamera_ = controller_.camera();
    shownOptions_ = options_;
    shownPreview_ = preview_;
    shownPreviewRevision_ = preview_ ? preview_->revision() : 0;
}

Image SceneView::capture(PixelSize size)
{
    return take({.size = size, .transparentBackground = options_.transparentBackground});
}

Image SceneView::take(const SceneCapture& picture)
{
    if (!renderer_)
        return {};
    renderer_->draw(frameOf_(picture));
    tookOther_ = true;
    return renderer_->readPixels();
}

SceneStatistics SceneView::statistics() const
{
    return renderer_ ? renderer_->statistics() : SceneStatistics{};
}

Vector2d SceneView::toView_(const Vector2f& position) const
{
    return position.cast<double>() - Vector2d(area_.x, area_.y);
}

std::optional<Vector3d> SceneView::pointUnderCursor_(const Vector2d& pixel)
{
    if (!renderer_)
        return {};
    if (std::exchange(tookOther_, false))
        renderer_->draw(frame_());
    return renderer_->pointUnderCursor(pixel);
}

SceneFrame SceneView::frame_() const
{
    SceneFrame frame;
    frame.root = root_.get();
    frame.preview = preview_.get();
    frame.camera = controller_.camera();
    frame.size = size_();
    frame.options = options_;
    frame.interactive = controller_.isMoving(monotonicSeconds());
    if (controller_.isOrbiting())
        frame.pivotMark = controller_.pivot();
    return frame;
}

SceneFrame SceneView::frameOfScene_() const
{
    SceneFrame frame = frame_();
    frame.preview = nullptr;
    frame.interactive = false;
    frame.pivotMark.reset();
    return frame;
}

SceneFrame SceneView::frameOf_(const SceneCapture& picture) const
{
    SceneFrame frame = frameOfScene_();
    frame.size = picture.size;
    if (picture.camera)
        frame.camera = *picture.camera;
    if (picture.root)
        frame.root = picture.root.get();
    frame.options.transparentBackground = picture.transparentBackground;
    return frame;
}

bool SceneView::isPreviewShown_() const
{
    return shownPreview_.lock() == preview_ && shownPreviewRevision_ == (preview_ ? preview_->revision() : 0);
}

std::optional<Vector3d> SceneView::pointAt(const Vector2f& position)
{
    return pointUnderCursor_(toView_(position));
}

void SceneView::pick(const Vector2f& position, ScenePicker::Callback done)
{
    pick({.size = size_()}, toView_(position), std::move(done));
}

void SceneView::pick(const SceneCapture& picture, const Vector2d& pixel, ScenePicker::Callback done)
{
    if (!picker_)
        return;
    const SceneFrame frame = frameOf_(picture);
    ScenePicker::Request request;
    request.root = frame.root;
    request.camera = frame.camera;
    request.size = frame.size;
    request.pixel = pixel;
    request.viewport = options_.viewport;
    request.scale = scale_;
    picker_->pick(request, std::move(done));
}

void SceneView::pick_(const Vector2d& pixel, std::function<void(const std::shared_ptr<Object>&)> done)
{
    pick((pixel + Vector2d(area_.x, area_.y)).cast<float>(),
         [done = std::move(done)](const std::optional<PickResult>& hit) { done(hit ? hit->object.lock() : nullptr); });
}

std::vector<VisibleFaces> SceneView::visibleFaces(const PixelRect& area)
{
    if (!renderer_ || size_().isEmpty())
        return {};
    return renderer_->visibleFaces(frameOfScene_(), {area.x - area_.x, area.y - area_.y, area.width, area.height});
}

std::vector<VisibleFaces> SceneView::visibleFaces(const SceneCapture& picture, const PixelRect& area)
{
    if (!renderer_ || picture.size.isEmpty())
        return {};
    tookOther_ = true;
    return renderer_->visibleFaces(frameOf_(picture), area);
}

void SceneView::select_(const Vector2d& pixel, int mods)
{
    pick_(pixel,
          [root = root_, mods](const std::shared_ptr<Object>& object)
          {
              const bool toggle = (mods & GLFW_MOD_CONTROL) != 0;
              const bool add = (mods & GLFW_MOD_SHIFT) != 0;
              if (!toggle && !add)
                  selectOnly(*root, object.get());
              else if (object)
                  object->setSelected(add || !object->isSelected());
          });
}

void SceneView::requestContext_(const Vector2d& pixel, const Vector2f& position)
{
    pick_(pixel,
          [this, position](const std::shared_ptr<Object>& object)
          {
              if (object && !object->isSelected())
                  selectOnly(*root_, object.get());
              if (contextRequest_)
                  contextRequest_(position);
          });
}

} // namespace VX
