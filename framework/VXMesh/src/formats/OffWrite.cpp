#include "formats/MergedMesh.h"
#include "formats/OffFormat.h"
#include "formats/TextWrite.h"

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
        : mesh_(root)
        , hasColors_(std::ranges::any_of(mesh_.parts, [](const PointsPart& part) { return !part.colors.empty(); }))
    {
    }

    [[nodiscard]] tl::expected<void, std::string>
    write(const std::filesystem::path& path, const ProgressCallback& progress, AtomicFile::Existing existing) const
    {
        return writeMergedMesh(
            mesh_,
            {.header = fmt::format("{}{}OFF\n# unit mm\n{} {} 0\n", hasColors_ ? "C" : "", mesh_.hasNormals ? "N" : "",
                                   mesh_.pointCount, mesh_.faceCount),
             .blockSize = kBlockSize,
             .appendPoints = [&](const ItemBlock& block, std::string& text) { appendPoints_(block, text); },
             .appendFaces = [&](const ItemBlock& block, std::string& text) { appendFaces_(block, text); }},
            path, progress, existing);
    }

private:
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
        const PointsPart& part = mesh_.parts[block.item];
        const Eigen::Matrix3d toSceneNormal = normalMatrix(part.toScene);
        for (std::size_t i = block.begin; i < block.end; ++i)
        {
            const std::size_t begin = text.size();
            appendPoint(text, part.point(i), mesh_.isPrecise);
            text.erase(begin, 1);
            if (mesh_.hasNormals)
                appendVector(text, sceneNormal(toSceneNormal, part.normals[i]));
            if (hasColors_)
                appendColor_(text, part.colorOf(i));
            text += '\n';
        }
    }

    void appendFaces_(const ItemBlock& block, std::string& text) const
    {
        const MeshItem& item = mesh_.items.meshes[block.item];
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

    MergedMesh mesh_;
    bool hasColors_;
};

} // namespace

tl::expected<void, std::string> writeOff(const Object& root, const std::filesystem::path& path,
                                         const ProgressCallback& progress, AtomicFile::Existing existing)
{
    return OffWriter(root).write(path, progress, existing);
}

} // namespace VX
