#include "formats/MergedMesh.h"

#include "formats/PointOffset.h"

#include <VXMesh/FileError.h>

#include <algorithm>

namespace VX
{

MergedMesh::MergedMesh(const Object& root)
    : items(collectSaveItems(root))
    , parts(pointsParts(items))
    , isPrecise(!chooseOffset(root.worldBox()).isZero(0.0))
    , hasNormals(std::ranges::none_of(parts, [](const PointsPart& part) { return part.normals.empty(); }))
{
    for (const PointsPart& part : parts)
        pointCount += part.points.size();
    for (const MeshItem& item : items.meshes)
        faceCount += item.geometry->triangles.size();
}

tl::expected<void, std::string> writeMergedMesh(const MergedMesh& mesh, const MergedMeshLayout& layout,
                                                const std::filesystem::path& path, const ProgressCallback& progress,
                                                AtomicFile::Existing existing)
{
    if (mesh.pointCount == 0)
        return tl::unexpected(fileErrorText("write", path, "nothing with points is visible."));
    auto file = FileWriter::create(path, existing);
    if (!file)
        return tl::unexpected(file.error());
    const auto points =
        splitItems(mesh.parts, layout.blockSize, [](const PointsPart& part) { return part.points.size(); });
    const auto faces = splitItems(mesh.items.meshes, layout.blockSize,
                                  [](const MeshItem& item) { return item.geometry->triangles.size(); });
    const auto fillPoints = [&](std::size_t i, std::string& bytes) { layout.appendPoints(points[i], bytes); };
    const auto fillFaces = [&](std::size_t i, std::string& bytes) { layout.appendFaces(faces[i], bytes); };
    return file->write(layout.header)
        .and_then([&] { return file->writeBlocks(points.size(), fillPoints, subprogress(progress, 0.0F, 0.4F)); })
        .and_then([&] { return file->writeBlocks(faces.size(), fillFaces, subprogress(progress, 0.4F, 1.0F)); })
        .and_then([&] { return file->commit(progress); });
}

} // namespace VX
