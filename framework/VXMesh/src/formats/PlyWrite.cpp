#include "formats/MergedMesh.h"
#include "formats/PlyFormat.h"

#include <VXMesh/FileError.h>
#include <VXMesh/VisualObject.h>

#include <fmt/format.h>

#include <algorithm>
#include <limits>

namespace VX
{

namespace
{

constexpr std::size_t kBlockSize = 65536;

/// Writes one tree; what the properties are depends on what its objects have.
class PlyWriter
{
public:
    explicit PlyWriter(const Object& root)
        : mesh_(root)
    {
        const auto isColored = [](const auto& item) { return item.color != VisualObject::defaultColor(); };
        const std::vector<MeshItem>& meshes = mesh_.items.meshes;
        hasPointColors_ =
            std::ranges::any_of(mesh_.parts, [](const PointsPart& part) { return !part.colors.empty(); }) ||
            std::ranges::any_of(mesh_.items.clouds, isColored);
        hasFaceColors_ =
            std::ranges::any_of(meshes, [](const MeshItem& item) { return !item.geometry->faceColors.empty(); }) ||
            (!hasPointColors_ && std::ranges::any_of(meshes, isColored));
    }

    [[nodiscard]] tl::expected<void, std::string>
    write(const std::filesystem::path& path, const ProgressCallback& progress, AtomicFile::Existing existing) const
    {
        if (mesh_.pointCount > std::numeric_limits<std::int32_t>::max())
            return tl::unexpected(fileErrorText("write", path, "PLY files hold at most 2,147,483,647 points."));
        return writeMergedMesh(
            mesh_,
            {.header = header_(),
             .blockSize = kBlockSize,
             .appendPoints = [&](const ItemBlock& block, std::string& bytes) { appendPoints_(block, bytes); },
             .appendFaces = [&](const ItemBlock& block, std::string& bytes) { appendFaces_(block, bytes); }},
            path, progress, existing);
    }

private:
    [[nodiscard]] std::string header_() const
    {
        constexpr std::string_view kColors =
            "property uchar red\nproperty uchar green\nproperty uchar blue\nproperty uchar alpha\n";
        std::string text = fmt::format("ply\nformat binary_little_endian 1.0\ncomment unit mm\nelement vertex {0}\n"
                                       "property {1} x\nproperty {1} y\nproperty {1} z\n",
                                       mesh_.pointCount, mesh_.isPrecise ? "double" : "float");
        if (mesh_.hasNormals)
            text += "property float nx\nproperty float ny\nproperty float nz\n";
        if (hasPointColors_)
            text += kColors;
        if (mesh_.faceCount > 0)
        {
            text += fmt::format("element face {}\nproperty list uchar int vertex_indices\n", mesh_.faceCount);
            if (hasFaceColors_)
                text += kColors;
        }
        return text + "end_header\n";
    }

    void appendPoints_(const ItemBlock& block, std::string& bytes) const
    {
        const PointsPart& part = mesh_.parts[block.item];
        const Eigen::Matrix3d toSceneNormal = normalMatrix(part.toScene);
        for (std::size_t i = block.begin; i < block.end; ++i)
        {
            const Vector3d point = part.point(i);
            if (mesh_.isPrecise)
                appendBytes(bytes, point);
            else
                appendBytes(bytes, Vector3f(point.cast<float>()));
            if (mesh_.hasNormals)
                appendBytes(bytes, sceneNormal(toSceneNormal, part.normals[i]));
            if (hasPointColors_)
                appendBytes(bytes, part.colorOf(i));
        }
    }

    void appendFaces_(const ItemBlock& block, std::string& bytes) const
    {
        const MeshItem& item = mesh_.items.meshes[block.item];
        const auto first = static_cast<std::uint32_t>(item.firstPoint);
        const auto& colors = item.geometry->faceColors;
        for (std::size_t i = block.begin; i < block.end; ++i)
        {
            bytes += '\3';
            appendBytes(bytes, Triangle(sceneTriangle(item, i).array() + first));
            if (hasFaceColors_)
                appendBytes(bytes, colors.empty() ? item.color : colors[i]);
        }
    }

    MergedMesh mesh_;
    bool hasPointColors_ = false;
    bool hasFaceColors_ = false;
};

} // namespace

tl::expected<void, std::string> writePly(const Object& root, const std::filesystem::path& path,
                                         const ProgressCallback& progress, AtomicFile::Existing existing)
{
    return PlyWriter(root).write(path, progress, existing);
}

} // namespace VX
