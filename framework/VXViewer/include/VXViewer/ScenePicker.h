#pragma once

#include <VXMesh/Object.h>
#include <VXViewer/Camera.h>

#include <cstdint>
#include <functional>
#include <memory>

namespace VX
{

/// What was hit by a pick.
struct PickResult
{
    std::weak_ptr<Object> object;
    /// The triangle, point or segment of the object's geometry.
    std::uint32_t element = 0;
    /// In scene coordinates.
    Vector3d point = Vector3d::Zero();
};

/// Finds the object under the cursor by ray cast against full detail. The search trees are built by a worker at the
/// first pick of each geometry and kept while the geometry lives; points and lines are hit within a few pixels.
/// @threads the UI thread
class VXVIEWER_API ScenePicker
{
public:
    /// Takes the nearest hit, or nothing.
    using Callback = std::function<void(std::optional<PickResult>)>;

    /// Runs a function soon on the UI thread; called on a worker thread.
    using Poster = std::function<void(std::function<void()>)>;

    /// What to pick.
    struct Request
    {
        const Object* root = nullptr; ///< with everything below it that is visible in `viewport`
        Camera camera;
        PixelSize size;
        Vector2d pixel = Vector2d::Zero();
        ViewportMask viewport{1};
        float scale = 1; ///< pixels in a unit of design: how near is near enough
    };

    explicit ScenePicker(Poster poster);

    /// Waits for the workers; callbacks not delivered yet never come.
    ~ScenePicker();

    ScenePicker(const ScenePicker&) = delete;
    ScenePicker& operator=(const ScenePicker&) = delete;

    /// Picks on a worker; `done` comes through the poster. A newer pick replaces one that has not begun: the older
    /// one's callback never comes.
    void pick(const Request& request, Callback done);

    /// The same at once on this thread, building what is missing.
    [[nodiscard]] std::optional<PickResult> pickNow(const Request& request);

private:
    struct State;
    std::shared_ptr<State> state_;
    Poster poster_;
};

} // namespace VX
