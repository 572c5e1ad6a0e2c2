#pragma once

#include "formats/FileWriter.h"
#include "formats/SaveItems.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace VX
{

/// What is visible of a tree, for formats that hold one mesh: the points of all objects, then the faces of all.
struct MergedMesh
{
    explicit MergedMesh(const Object& root);

    SaveItems items;
    std::vector<PointsPart> parts; ///< the points, in their order in the file
    std::size_t pointCount = 0;
    std::size_t faceCount = 0;
    bool isPrecise;  ///< single precision would lose detail of the points
    bool hasNormals; ///< all points have one
};

/// How a format has a merged mesh. The functions append to the bytes and are called on several threads at once.
struct MergedMeshLayout
{
    std::string header;
    std::size_t blockSize = 0; ///< how many points or faces a block has at most
    std::function<void(const ItemBlock& ofPart, std::string& bytes)> appendPoints;
    std::function<void(const ItemBlock& ofMesh, std::string& bytes)> appendFaces;
};

/// Writes the header, the points and the faces.
/// @return `Cannot write "NAME": REASON.` or "Operation was canceled"
[[nodiscard]] tl::expected<void, std::string> writeMergedMesh(const MergedMesh& mesh, const MergedMeshLayout& layout,
                                                              const std::filesystem::path& path,
                                                              const ProgressCallback& progress,
                                                              AtomicFile::Existing existing);

} // namespace VX
