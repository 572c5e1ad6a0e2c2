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

/// Adds colour, opacity and shading, as `Detail::Full` has them.
void addAppearance(Json::Value& value, const Object& object);

/// The schema of `agentJson`, with descriptions.
[[nodiscard]] Json::Value agentObjectSchema();

/// The same in short, for tools that need not explain it again.
[[nodiscard]] Json::Value shortObjectSchema();

/// The colour and so on of `addAppearance`, added to a schema.
void addAppearanceSchema(Json::Value& schema);

/// {"objects": [...]}, a summary each.
[[nodiscard]] Json::Value agentObjectsJson(const std::vector<std::shared_ptr<Object>>& objects);

/// The schema of that.
[[nodiscard]] Json::Value agentObjectsSchema(const char* description);

} // namespace VX
