#include "formats/FileWriter.h"
#include "formats/PlyFormat.h"
#include "formats/PointOffset.h"
#include "formats/SaveItems.h"

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
        : items_(collectSaveItems(root))
        , parts_(pointsParts(items_))
        , isPrecise_(!chooseOffset(root.worldBox()).isZero(0.0))
        , hasNormals_(std::ranges::none_of(parts_, [](const PointsPart& part) { return part.normals.empty(); }))
    {
        const auto isColored = [](const auto& item) { return item.color != VisualObject::defaultColor(); };
        hasPointColors_ = std::ranges::any_of(parts_, [](const PointsPart& part) { return !part.colors.empty(); }) ||
                          std::ranges::any_of(items_.clouds, isColored);
        hasFaceColors_ = std::ranges::any_of(items_.meshes,
                                             [](const MeshItem& item) { return !item.geometry->faceColors.empty(); }) ||
                         (!hasPointColors_ && std::ranges::any_of(items_.meshes, isColored));
        for (const PointsPart& part : parts_)
            pointCount_ += part.points.size();
        for (const MeshItem& item : items_.meshes)
            faceCount_ += item.geometry->triangles.size();
    }

    [[nodiscard]] tl::expected<void, std::string>
    write(const std::filesystem::path& path, const ProgressCallback& progress, AtomicFile::Existing existing) const
    {
        if (pointCount_ == 0)
            return tl::unexpected(fileErrorText("write", path, "nothing with points is visible."));
        if (pointCount_ > std::numeric_limits<std::int32_t>::max())
            return tl::unexpected(fileErrorText("write", path, "PLY files hold at most 2,147,483,647 points."));
        auto file = FileWriter::create(path, existing);
        if (!file)
            return tl::unexpected(file.error());
        const auto pointBlocks =
            splitItems(parts_, kBlockSize, [](const PointsPart& part) { return part.points.size(); });
        const auto faceBlocks =
            splitItems(items_.meshes, kBlockSize, [](const MeshItem& item) { return item.geometry->triangles.size(); });
        const auto fillPoints = [&](std::size_t i, std::string& bytes) { appendPoints_(pointBlocks[i], bytes); };
        const auto fillFaces = [&](std::size_t i, std::string& bytes) { appendFaces_(faceBlocks[i], bytes); };
        return file->write(header_())
            .and_then([&]
                      { return file->writeBlocks(pointBlocks.size(), fillPoints, subprogress(progress, 0.0F, 0.4F)); })
            .and_then([&]
                      { return file->writeBlocks(faceBlocks.size(), fillFaces, subprogress(progress, 0.4F, 1.0F)); })
            .and_then([&] { return file->commit(progress); });
    }

private:
    [[nodiscard]] std::string header_() const
    {
        constexpr std::string_view kColors =
            "property uchar red\nproperty uchar green\nproperty uchar blue\nproperty uchar alpha\n";
        std::string text = fmt::format("ply\nformat binary_little_endian 1.0\ncomment unit mm\nelement vertex {0}\n"
                                       "property {1} x\nproperty {1} y\nproperty {1} z\n",
                                       pointCount_, isPrecise_ ? "double" : "float");
        if (hasNormals_)
            text += "property float nx\nproperty float ny\nproperty float nz\n";
        if (hasPointColors_)
            text += kColors;
        if (faceCount_ > 0)
        {
            text += fmt::format("element face {}\nproperty list uchar int vertex_indices\n", faceCount_);
            if (hasFaceColors_)
                text += kColors;
        }
        return text + "end_header\n";
    }

    void appendPoints_(const ItemBlock& block, std::string& bytes) const
    {
        const PointsPart& part = parts_[block.item];
        const Eigen::Matrix3d toSceneNormal = normalMatrix(part.toScene);
        for (std::size_t i = block.begin; i < block.end; ++i)
        {
            const Vector3d point = part.point(i);
            if (isPrecise_)
                appendBytes(bytes, point);
            else
                appendBytes(bytes, Vector3f(point.cast<float>()));
            if (hasNormals_)
                appendBytes(bytes, sceneNormal(toSceneNormal, part.normals[i]));
            if (hasPointColors_)
                appendBytes(bytes, part.colorOf(i));
        }
    }

    void appendFaces_(const ItemBlock& block, std::string& bytes) const
    {
        const MeshItem& item = items_.meshes[block.item];
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

    SaveItems items_;
    std::vector<PointsPart> parts_;
    bool isPrecise_;
    bool hasNormals_;
    bool hasPointColors_ = false;
    bool hasFaceColors_ = false;
    std::size_t pointCount_ = 0;
    std::size_t faceCount_ = 0;
};

} // namespace

tl::expected<void, std::string> writePly(const Object& root, const std::filesystem::path& path,
                                         const ProgressCallback& progress, AtomicFile::Existing existing)
{
    return PlyWriter(root).write(path, progress, existing);
}

} // namespace VX
