#pragma once

#include "AgentCall.h"

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

/// The picture that "picture" describes; that of the user's view where there is none.
/// @return what `changedCamera` says
/// @threads the UI thread
[[nodiscard]] tl::expected<SceneCapture, std::string> pictureOf(const Viewer& viewer, const AgentArguments& arguments);

/// Where that picture begins in the one that pixels are counted in: not at 0, 0 for a view of a montage.
[[nodiscard]] Vector2d pictureCorner(const AgentArguments& arguments);

/// Finds what "x" and "y", or "ray", of `call` point at. `done` comes on the UI thread, with nothing on the background;
/// what cannot be found answers the call.
/// @threads the UI thread
void pickFor(const std::shared_ptr<AgentCall>& call, std::function<void(const std::optional<PickResult>&)> done);

} // namespace VX
