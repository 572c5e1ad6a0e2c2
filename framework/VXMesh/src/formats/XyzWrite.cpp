#include "formats/PointOffset.h"
#include "formats/SaveItems.h"
#include "formats/TextWrite.h"
#include "formats/XyzFormat.h"

#include <VXMesh/FileError.h>

#include <algorithm>

namespace VX
{

tl::expected<void, std::string> writeXyz(const Object& root, const std::filesystem::path& path,
                                         const ProgressCallback& progress, AtomicFile::Existing existing)
{
    constexpr std::size_t kBlockSize = 16384;
    const SaveItems items = collectSaveItems(root);
    const auto parts = pointsParts(items);
    if (parts.empty())
        return tl::unexpected(fileErrorText("write", path, "nothing with points is visible."));
    const bool isPrecise = !chooseOffset(root.worldBox()).isZero(0.0);
    const bool hasColors = std::ranges::any_of(parts, [](const PointsPart& part) { return !part.colors.empty(); });
    const bool hasNormals =
        !hasColors && std::ranges::none_of(parts, [](const PointsPart& part) { return part.normals.empty(); });

    auto file = FileWriter::create(path, existing);
    if (!file)
        return tl::unexpected(file.error());
    const auto blocks = splitItems(parts, kBlockSize, [](const PointsPart& part) { return part.points.size(); });
    const auto fill = [&](std::size_t block, std::string& text)
    {
        const PointsPart& part = parts[blocks[block].item];
        const Eigen::Matrix3d toSceneNormal = normalMatrix(part.toScene);
        for (std::size_t i = blocks[block].begin; i < blocks[block].end; ++i)
        {
            const std::size_t begin = text.size();
            appendPoint(text, part.point(i), isPrecise);
            text.erase(begin, 1);
            if (hasColors)
            {
                const Color color = part.colorOf(i);
                for (const std::uint8_t channel : {color.r, color.g, color.b})
                {
                    text += ' ';
                    appendNumber(text, std::size_t{channel});
                }
            }
            if (hasNormals)
                appendVector(text, sceneNormal(toSceneNormal, part.normals[i]));
            text += '\n';
        }
    };
    return file->writeBlocks(blocks.size(), fill, progress).and_then([&] { return file->commit(progress); });
}

} // namespace VX
