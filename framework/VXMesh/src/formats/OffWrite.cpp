#include "formats/OffFormat.h"
#include "formats/PointOffset.h"
#include "formats/SaveItems.h"
#include "formats/TextWrite.h"

#include <VXMesh/FileError.h>

#include <fmt/format.h>

#include <algorithm>

namespace VX
{

namespace
{

constexpr std::size_t kBlockSize = 16384;

class OffWriter
{
public:
    explicit OffWriter(const Object& root)
        : items_(collectSaveItems(root))
        , parts_(pointsParts(items_))
        , isPrecise_(!chooseOffset(root.worldBox()).isZero(0.0))
        , hasNormals_(std::ranges::none_of(parts_, [](const PointsPart& part) { return part.normals.empty(); }))
        , hasColors_(std::ranges::any_of(parts_, [](const PointsPart& part) { return !part.colors.empty(); }))
    {
    }

    [[nodiscard]] tl::expected<void, std::string>
    write(const std::filesystem::path& path, const ProgressCallback& progress, AtomicFile::Existing existing) const
    {
        if (parts_.empty())
            return tl::unexpected(fileErrorText("write", path, "nothing with points is visible."));
        auto file = FileWriter::create(path, existing);
        if (!file)
            return tl::unexpected(file.error());
        const auto pointBlocks =
            splitItems(parts_, kBlockSize, [](const PointsPart& part) { return part.points.size(); });
        const auto faceBlocks =
            splitItems(items_.meshes, kBlockSize, [](const MeshItem& item) { return item.geometry->triangles.size(); });
        const auto fillPoints = [&](std::size_t i, std::string& text) { appendPoints_(pointBlocks[i], text); };
        const auto fillFaces = [&](std::size_t i, std::string& text) { appendFaces_(faceBlocks[i], text); };
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
        std::size_t points = 0;
        std::size_t faces = 0;
        for (const PointsPart& part : parts_)
            points += part.points.size();
        for (const MeshItem& item : items_.meshes)
            faces += item.geometry->triangles.size();
        return fmt::format("{}{}OFF\n# unit mm\n{} {} 0\n", hasColors_ ? "C" : "", hasNormals_ ? "N" : "", points,
                           faces);
    }

    static void appendColor_(std::string& text, Color color)
    {
        for (const std::uint8_t channel : {color.r, color.g, color.b, color.a})
        {
            text += ' ';
            appendNumber(text, std::size_t{channel});
        }
    }

    void appendPoints_(const ItemBlock& block, std::string& text) const
    {
        const PointsPart& part = parts_[block.item];
        const Eigen::Matrix3d toSceneNormal = normalMatrix(part.toScene);
        for (std::size_t i = block.begin; i < block.end; ++i)
        {
            const std::size_t begin = text.size();
            appendPoint(text, part.point(i), isPrecise_);
            text.erase(begin, 1);
            if (hasNormals_)
                appendVector(text, sceneNormal(toSceneNormal, part.normals[i]));
            if (hasColors_)
                appendColor_(text, part.colorOf(i));
            text += '\n';
        }
    }

    void appendFaces_(const ItemBlock& block, std::string& text) const
    {
        const MeshItem& item = items_.meshes[block.item];
        for (std::size_t i = block.begin; i < block.end; ++i)
        {
            text += '3';
            const Triangle triangle = sceneTriangle(item, i);
            for (const std::uint32_t corner : {triangle[0], triangle[1], triangle[2]})
            {
                text += ' ';
                appendNumber(text, item.firstPoint + corner);
            }
            if (!item.geometry->faceColors.empty())
                appendColor_(text, item.geometry->faceColors[i]);
            text += '\n';
        }
    }

    SaveItems items_;
    std::vector<PointsPart> parts_;
    bool isPrecise_;
    bool hasNormals_;
    bool hasColors_;
};

} // namespace

tl::expected<void, std::string> writeOff(const Object& root, const std::filesystem::path& path,
                                         const ProgressCallback& progress, AtomicFile::Existing existing)
{
    return OffWriter(root).write(path, progress, existing);
}

} // namespace VX
