#pragma once

#include <VXMesh/Object.h>
#include <VXViewer/Export.h>

#include <cstdint>
#include <string>
#include <vector>

namespace VX
{

/// How much there is in a part of the scene.
struct VXVIEWER_API SceneFacts
{
    std::uint64_t objects = 0; ///< with geometry
    std::uint64_t triangles = 0;
    std::uint64_t vertices = 0; ///< of meshes
    std::uint64_t points = 0;   ///< of point clouds
    std::uint64_t segments = 0;
    Box3d box; ///< in scene coordinates

    /// Counts `object` and everything below it.
    void add(const Object& object);
};

/// What stands in numbers in the user's language.
struct NumberSigns
{
    std::string thousands = ",";
    char decimal = '.';
};

[[nodiscard]] NumberSigns numberSigns();

/// "1,234,567"
[[nodiscard]] VXVIEWER_API std::string countText(std::uint64_t count);

/// A length or coordinate in scene units: five digits, or all those before the point: "12.345", "123457". Less than
/// 0.00005 is "0".
[[nodiscard]] VXVIEWER_API std::string lengthText(double length);

} // namespace VX
