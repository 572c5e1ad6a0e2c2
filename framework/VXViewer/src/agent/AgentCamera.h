#pragma once

#include "AgentArguments.h"

#include <VXViewer/Camera.h>

#include <json/value.h>
#include <tl/expected.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace VX
{

// How agents say where to look from, and are told.
// @threads any

/// The names of the standard views, "front" and so on.
[[nodiscard]] const std::vector<const char*>& standardViewNames();

/// Nothing for any other name.
[[nodiscard]] std::optional<StandardView> standardViewOf(std::string_view name);

[[nodiscard]] Json::Value cameraJson(const Camera& camera);

/// The schema of that.
[[nodiscard]] Json::Value cameraSchema();

/// The schema of what `changedCamera` reads.
[[nodiscard]] Json::Value cameraArgumentSchema();

/// `camera` with the fields that `fields` has: what `cameraJson` gave makes the same camera again.
/// @param view  what it turns to first; where `fields` has the eye or the target alone then, the other moves along
/// @return `The eye and the target must not be the same point. …`
[[nodiscard]] tl::expected<Camera, std::string> changedCamera(Camera camera, const AgentArguments& fields,
                                                              std::optional<StandardView> view = {});

} // namespace VX
