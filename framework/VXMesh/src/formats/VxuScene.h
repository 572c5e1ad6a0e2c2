#pragma once

#include "formats/GeometryCodec.h"

#include <VXMesh/Object.h>

#include <json/value.h>
#include <tl/expected.hpp>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace VX
{

/// The newest version of the scene format that is understood, and the one that is written.
inline constexpr int kVxuMajorVersion = 1;
inline constexpr int kVxuMinorVersion = 0;

/// What goes into a vxu file: scene.json, and the geometry entries that it refers to by name.
struct VxuDocument
{
    Json::Value scene;
    std::vector<std::string> names;
    std::vector<AnyGeometry> geometries; ///< one for each name, all different
};

/// Describes `root` and all below it. A nameless plain object without a transform of its own is a mere container: its
/// children are the top-level objects then.
/// @return what stands against it, as the end of a sentence
[[nodiscard]] tl::expected<VxuDocument, std::string> describeScene(const Object& root);

using GeometryByName = std::map<std::string, std::optional<AnyGeometry>>;

/// The names of all geometry entries that the objects of a scene refer to, without values.
[[nodiscard]] GeometryByName geometryNames(const Json::Value& scene);

/// Makes the objects that scene.json describes.
/// @param[out] warnings  remarks about objects whose geometry is missing
/// @return the top-level objects; nothing where the description is damaged
[[nodiscard]] std::optional<std::vector<std::shared_ptr<Object>>>
buildObjects(const Json::Value& scene, const GeometryByName& geometries, std::vector<std::string>& warnings);

/// The member of an object; null where there is no such member or `value` is no object.
[[nodiscard]] const Json::Value& memberOf(const Json::Value& value, const char* key);

} // namespace VX
