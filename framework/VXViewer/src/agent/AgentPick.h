#pragma once

#include "AgentCall.h"
#include "ChosenScene.h"

#include <VXViewer/SceneView.h>

#include <json/value.h>
#include <tl/expected.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace VX
{

// How agents point at something in a picture that they were given, or along a ray.

/// The schema of "picture", which names the picture in which pixels are counted.
[[nodiscard]] Json::Value pictureArgumentSchema();

/// Adds "x", "y", "ray" and "picture" to the properties of `schema`.
void addPointSchema(Json::Value& schema);

/// A picture of the scene, in which agents count pixels.
struct AgentPicture
{
    SceneCapture capture{};
    /// Where it begins in what pixels are counted in: not at 0, 0 for a view of a montage and in one of the window.
    Vector2d corner = Vector2d::Zero();
    /// What alone it shows, of which `capture` has copies; null: all.
    std::shared_ptr<const ChosenScene> chosen{};
};

/// The picture that "picture" describes; that of the user's view where there is none.
/// @return what `changedCamera` and `AgentArguments::objects` say
/// @threads the UI thread
[[nodiscard]] tl::expected<AgentPicture, std::string> pictureOf(const Viewer& viewer, const AgentArguments& arguments);

/// The point "x", "y", named by the names of the arguments, as pixels of `picture`.
/// @return `The point … lies outside of the picture …`
[[nodiscard]] tl::expected<Vector2d, std::string> pixelOf(const AgentPicture& picture, const AgentArguments& arguments,
                                                          const char* x, const char* y);

/// Finds what "x" and "y", or "ray", of `call` point at. `done` comes on the UI thread, with nothing on the background;
/// what cannot be found answers the call.
/// @threads the UI thread
void pickFor(const std::shared_ptr<AgentCall>& call, std::function<void(const std::optional<PickResult>&)> done);

} // namespace VX
