#include "render/CameraFit.h"
#include "render/Picture.h"
#include "render/SceneDrawing.h"
#include "render/StandInMaker.h"
#include "render/VisibleFacesSearch.h"

#include <VXViewer/SceneRenderer.h>

#include <tbb/blocked_range.h>
#include <tbb/parallel_reduce.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

namespace VX
{

namespace
{

/// How many triangles or points may be drawn while the view moves: about 40 ms on two cores.
constexpr std::uint64_t softwareBudget = 250000;
constexpr std::uint64_t hardwareBudget = 20000000;

constexpr int hardwareSamples = 4;

/// How far around a pixel thin things are found, in pixels.
constexpr int searchReach = 4;

/// The distance along the view direction from a number of the depth buffer, 0 to 1.
double depthFromBuffer(const Camera& camera, ClipRange range, double value)
{
    const double n = range.nearPlane;
    const double f = range.farPlane;
    if (camera.projection() == Projection::Orthographic)
        return n + (f - n) * value;
    return f * n / (f - value * (f - n));
}

bool detectSoftware()
{
    const auto* name = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    const std::string_view renderer = name == nullptr ? "" : name;
    return renderer.find("llvmpipe") != std::string_view::npos || renderer.find("softpipe") != std::string_view::npos ||
           renderer.find("SWR") != std::string_view::npos || renderer.find("Software") != std::string_view::npos;
}

} // namespace

struct SceneRenderer::State
{
    /// What the cached picture was drawn from.
    struct Key
    {
        std::uint64_t rootId = 0;
        std::uint64_t revision = 0;
        std::uint64_t previewId = 0;
        std::uint64_t previewRevision = 0;
        Camera camera;
        PixelSize size;
        SceneOptions options;
        bool simplified = false;
        std::uint64_t standIns = 0; ///< how many had arrived, where they count
        std::optional<Vector3d> pivotMark;

        friend bool operator==(const Key&, const Key&) = default;
    };

    explicit State(std::function<void()> standInReady)
        : standIns(std::move(standInReady))
        , software(detectSoftware())
    {
    }

    [[nodiscard]] std::uint64_t budget() const { return software ? softwareBudget : hardwareBudget; }

    [[nodiscard]] bool isHeavy() const { return triangles + points > budget(); }

    void updateScene(const SceneFrame& frame);
    void takeStandIns();
    void requestStandIns();

    GpuScene gpu;
    Picture picture;
    StandInMaker standIns;
    bool software;
    std::optional<Key> drawn;
    ClipRange drawnRange;
    SceneStatistics statistics;
    std::uint64_t standInCount = 0;

    // What is known of the scene with this root, at this revision, in this viewport.
    std::uint64_t rootId = 0;
    std::uint64_t revision = 0;
    std::uint64_t previewId = 0;
    std::uint64_t previewRevision = 0;
    ViewportMask viewport;
    Box3d box;
    std::uint64_t triangles = 0;
    std::uint64_t points = 0;
    std::vector<std::weak_ptr<const Mesh>> meshes;
    bool standInsRequested = false;
};

void SceneRenderer::State::updateScene(const SceneFrame& frame)
{
    const std::uint64_t newId = frame.root == nullptr ? 0 : frame.root->id();
    const std::uint64_t newRevision = frame.root == nullptr ? 0 : frame.root->revision();
    const std::uint64_t newPreviewId = frame.preview == nullptr ? 0 : frame.preview->id();
    const std::uint64_t newPreviewRevision = frame.preview == nullptr ? 0 : frame.preview->revision();
    if (newId == rootId && newRevision == revision && newPreviewId == previewId &&
        newPreviewRevision == previewRevision && frame.options.viewport == viewport)
        return;
    rootId = newId;
    revision = newRevision;
    previewId = newPreviewId;
    previewRevision = newPreviewRevision;
    viewport = frame.options.viewport;
    box = Box3d();
    triangles = 0;
    points = 0;
    meshes.clear();
    standInsRequested = false;
    gpu.meshes.collect();
    gpu.points.collect();
    gpu.lines.collect();
    gpu.faceSets.collect();
    const auto add = [&](const VisibleObject& visible)
    {
        if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&visible.object); mesh != nullptr && mesh->mesh())
        {
            triangles += mesh->mesh()->triangles.size();
            meshes.emplace_back(mesh->mesh());
        }
        else if (const auto* cloud = dynamic_cast<const ObjectPoints*>(&visible.object);
                 cloud != nullptr && cloud->pointCloud())
        {
            points += cloud->pointCloud()->points.size();
        }
    };
    for (const Object* root : {frame.root, frame.preview})
    {
        if (root == nullptr)
            continue;
        box.extend(visibleBox(*root, viewport));
        visitVisible(*root, viewport, add);
    }
}

void SceneRenderer::State::takeStandIns()
{
    for (StandInMaker::Finished& finished : standIns.takeFinished())
    {
        if (GpuMesh* mesh = gpu.meshes.find(finished.mesh); mesh != nullptr)
            mesh->setStandIns(std::move(finished.standIns));
        ++standInCount;
    }
}

void SceneRenderer::State::requestStandIns()
{
    if (standInsRequested)
        return;
    standInsRequested = true;
    for (const auto& weak : meshes)
    {
        GpuMesh* gpuMesh = gpu.meshes.find(weak);
        const auto mesh = weak.lock();
        if (gpuMesh == nullptr || !mesh || gpuMesh->standInsRequested || mesh->triangles.size() < standInLeastTriangles)
            continue;
        gpuMesh->standInsRequested = true;
        standIns.request(mesh, triangles);
    }
}

SceneRenderer::SceneRenderer(std::function<void()> standInReady)
    : state_(std::make_unique<State>(std::move(standInReady)))
{
}

SceneRenderer::~SceneRenderer() = default;

bool SceneRenderer::draw(const SceneFrame& frame)
{
    if (frame.size.isEmpty())
        return false;
    State& s = *state_;
    s.updateScene(frame);
    s.takeStandIns();
    const bool simplify = frame.interactive && s.isHeavy();
    const State::Key key{s.rootId,          s.revision,   s.previewId,
                         s.previewRevision, frame.camera, frame.size,
                         frame.options,     simplify,     simplify ? s.standInCount : 0,
                         frame.pivotMark};
    if (s.drawn == key)
        return false;

    const SceneContents contents(frame, s.gpu, s.box);
    SceneDrawing drawing(frame, contents, s.gpu, simplify ? s.budget() : 0);
    s.picture.begin(frame.size, frame.options.samples > 0 ? frame.options.samples : s.software ? 1 : hardwareSamples);
    drawing.draw();
    s.picture.end();
    s.drawn = key;
    s.drawnRange = drawing.range();
    s.statistics = {s.statistics.frames + 1, drawing.drawnTriangles(), drawing.isSimplified()};
    if (simplify)
        s.requestStandIns();
    return true;
}

void SceneRenderer::invalidate()
{
    state_->drawn.reset();
}

void SceneRenderer::prepareStandIns()
{
    if (state_->drawn && state_->isHeavy())
        state_->requestStandIns();
}

void SceneRenderer::blit(unsigned framebuffer, int x, int y)
{
    if (!state_->picture.size().isEmpty())
        state_->picture.blit(framebuffer, x, y);
}

std::vector<VisibleFaces> SceneRenderer::visibleFaces(const SceneFrame& frame, const PixelRect& area)
{
    SceneFrame full = frame;
    full.interactive = false;
    draw(full);
    const State& s = *state_;
    const int x0 = std::max(area.x, 0);
    const int y0 = std::max(area.y, 0);
    const PixelRect inside{x0, y0, std::min(area.x + area.width, frame.size.width) - x0,
                           std::min(area.y + area.height, frame.size.height) - y0};
    if (inside.width <= 0 || inside.height <= 0)
        return {};
    const SceneContents contents(full, state_->gpu, s.box);
    const int fromBelow = frame.size.height - inside.y - inside.height;
    const Eigen::ArrayXXf depths = s.picture.readDepth(inside.x, fromBelow, {inside.width, inside.height});
    return VisibleFacesSearch(full, s.drawnRange, inside, depths).find(contents);
}

Image SceneRenderer::readPixels()
{
    Image image = state_->picture.read();
    if (state_->drawn && state_->drawn->options.transparentBackground)
    {
        const auto divide = [](std::uint8_t value, std::uint8_t alpha)
        { return static_cast<std::uint8_t>(std::min(value * 255 / alpha, 255)); };
        for (Color& c : image.pixels)
        {
            if (c.a != 0)
                c = {divide(c.r, c.a), divide(c.g, c.a), divide(c.b, c.a), c.a};
        }
    }
    return image;
}

PixelSize SceneRenderer::size() const
{
    return state_->picture.size();
}

std::optional<Vector3d> SceneRenderer::pointUnderCursor(const Vector2d& pixel)
{
    const State& s = *state_;
    if (!s.drawn)
        return {};
    const PixelSize size = s.drawn->size;
    const int x = static_cast<int>(std::floor(pixel.x()));
    const int y = size.height - 1 - static_cast<int>(std::floor(pixel.y()));
    const int x0 = std::max(x - searchReach, 0);
    const int y0 = std::max(y - searchReach, 0);
    const PixelSize part{std::min(x + searchReach + 1, size.width) - x0,
                         std::min(y + searchReach + 1, size.height) - y0};
    if (part.isEmpty())
        return {};
    const Eigen::ArrayXXf depths = s.picture.readDepth(x0, y0, part);

    int best = std::numeric_limits<int>::max();
    std::optional<Vector3d> point;
    for (int j = 0; j < part.height; ++j)
    {
        for (int i = 0; i < part.width; ++i)
        {
            const int dx = x0 + i - x;
            const int dy = y0 + j - y;
            const int apart = dx * dx + dy * dy;
            if (depths(i, j) >= 1 || apart >= best)
                continue;
            best = apart;
            const Vector2d center(x0 + i + 0.5, size.height - (y0 + j + 0.5));
            const Camera& camera = s.drawn->camera;
            const double depth = depthFromBuffer(camera, s.drawnRange, double(depths(i, j)));
            point = camera.unproject(center, depth, size);
        }
    }
    return point;
}

Box3d SceneRenderer::visibleBox(const Object& root, ViewportMask viewport)
{
    Box3d box;
    visitVisible(root, viewport, [&](const VisibleObject& visible) { box.extend(ownWorldBox(visible)); });
    return box;
}

void SceneRenderer::fit(Camera& camera, const Object& root, const FitArea& area, ViewportMask viewport)
{
    const Box3d box = visibleBox(root, viewport);
    if (box.isEmpty())
        return;
    const CameraFit none(camera, area, box.center());
    CameraFit whole = none;
    const auto add = [&](const VisibleObject& visible)
    {
        const std::vector<Vector3f>* points = pointsOf(visible.object);
        if (points == nullptr)
            return;
        whole.merge(tbb::parallel_reduce(
            tbb::blocked_range<std::size_t>(0, points->size(), 1 << 14), none,
            [&](const tbb::blocked_range<std::size_t>& range, CameraFit part)
            {
                for (std::size_t i = range.begin(); i != range.end(); ++i)
                    part.add(visible.world * (*points)[i].cast<double>());
                return part;
            },
            [](CameraFit a, const CameraFit& b)
            {
                a.merge(b);
                return a;
            }));
    };
    visitVisible(root, viewport, add);
    whole.apply(camera);
}

const SceneStatistics& SceneRenderer::statistics() const
{
    return state_->statistics;
}

bool SceneRenderer::isSoftware() const
{
    return state_->software;
}

} // namespace VX
