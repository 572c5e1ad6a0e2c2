#include "ReaderOracle.h"

#include "MemoryWatch.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

namespace VX::Test
{

namespace
{

void require(bool good, const char* what, std::string_view detail = {})
{
    if (good)
        return;
    std::fprintf(stderr, "%s: %.*s\n", what, static_cast<int>(detail.size()), detail.data());
    std::abort();
}

void checkSentence(const std::string& text, std::string_view name)
{
    require(text.size() > name.size() && text.back() == '.', "not a sentence", text);
    require(text.find('"' + std::string(name) + '"') != std::string::npos, "does not name the file", text);
    require(text.find('\n') == std::string::npos, "more than a line", text);
}

void checkVectors(const std::vector<Vector3f>& vectors)
{
    const auto isFinite = [](const Vector3f& vector) { return vector.allFinite(); };
    require(std::ranges::all_of(vectors, isFinite), "not finite");
}

template <typename Corners>
void checkIndices(const std::vector<Corners>& elements, std::size_t pointCount)
{
    const auto isWithin = [&](const Corners& corners) { return corners.maxCoeff() < pointCount; };
    require(std::ranges::all_of(elements, isWithin), "an index names no point");
}

template <typename Attribute>
void checkAttributes(const std::vector<Attribute>& attributes, std::size_t count)
{
    require(attributes.empty() || attributes.size() == count, "attributes of a wrong number");
}

void check(const Mesh& mesh)
{
    checkVectors(mesh.points);
    checkVectors(mesh.normals);
    checkIndices(mesh.triangles, mesh.points.size());
    checkAttributes(mesh.normals, mesh.points.size());
    checkAttributes(mesh.vertexColors, mesh.points.size());
    checkAttributes(mesh.faceColors, mesh.triangles.size());
}

void check(const PointCloud& cloud)
{
    checkVectors(cloud.points);
    checkVectors(cloud.normals);
    checkAttributes(cloud.normals, cloud.points.size());
    checkAttributes(cloud.colors, cloud.points.size());
}

void check(const Lines& lines)
{
    checkVectors(lines.points);
    checkIndices(lines.segments, lines.points.size());
}

void checkObject(const Object& object)
{
    require(object.transform().matrix().allFinite(), "a transform is not finite");
    if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&object))
        checkGeometry(mesh->mesh());
    else if (const auto* points = dynamic_cast<const ObjectPoints*>(&object))
        checkGeometry(points->pointCloud());
    else if (const auto* lines = dynamic_cast<const ObjectLines*>(&object))
        checkGeometry(lines->lines());
}

/// Lists of small objects and the trees of JSON take the most for a byte of their file.
constexpr std::size_t kMemoryPerByte = 256;

/// What threads and tables take for any file.
constexpr std::size_t kBaseMemory = std::size_t{1} << 20U;

} // namespace

void checkGeometry(const AnyGeometry& geometry)
{
    std::visit(
        [](const auto& pointer)
        {
            if (pointer)
                check(*pointer);
        },
        geometry);
}

void checkReader(const SourceReader& reader, std::string_view name, std::span<const std::byte> bytes)
{
    // The mapping of a file, which no reader sees, refuses the empty one.
    if (bytes.empty())
        return;
    const MemoryWatch memory;
    const auto loaded = reader(Source(bytes, name), {});
    require(memory.peak() <= kBaseMemory + kMemoryPerByte * bytes.size(), "too much memory",
            std::to_string(memory.peak()) + " bytes");
    if (!loaded)
        return checkSentence(loaded.error(), name);
    require(!loaded->objects.empty(), "neither an object nor an error");
    for (const auto& object : loaded->objects)
        visitObjects(*object, checkObject);
    for (const std::string& warning : loaded->warnings)
        checkSentence(warning, name);
}

} // namespace VX::Test
