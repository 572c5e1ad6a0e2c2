#pragma once

#include <VXMesh/Object.h>

#include <json/value.h>

#include <memory>
#include <vector>

namespace VX
{

/// How much is told of an object.
enum class Detail
{
    Summary,
    Full
};

/// An object as agents see it.
/// @threads the UI thread
[[nodiscard]] Json::Value agentJson(const Object& object, Detail detail);

/// The schema of that, with descriptions.
[[nodiscard]] Json::Value agentObjectSchema();

/// The same in short, for tools that need not explain it again.
[[nodiscard]] Json::Value shortObjectSchema();

/// {"objects": [...]}, a summary each.
[[nodiscard]] Json::Value agentObjectsJson(const std::vector<std::shared_ptr<Object>>& objects);

/// The schema of that.
[[nodiscard]] Json::Value agentObjectsSchema(const char* description);

} // namespace VX
