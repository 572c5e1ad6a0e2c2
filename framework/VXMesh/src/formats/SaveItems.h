#pragma once

#include <VXMesh/Geometry.h>
#include <VXMesh/Object.h>

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace VX
{

/// The geometry of one visible object, to be written in scene coordinates.
template <typename Geometry>
struct SaveItem
{
    const Geometry* geometry = nullptr;
    std::string name;
    Transform toScene = Transform::Identity();
    Color color;
    bool mirrored = false;      ///< `toScene` turns outside in: the winding of triangles has to be swapped
    std::size_t firstPoint = 0; ///< the number of points in the items of this kind before

    /// Point `i` in scene coordinates.
    [[nodiscard]] Vector3d point(std::size_t i) const { return toScene * geometry->points[i].template cast<double>(); }
};

using MeshItem = SaveItem<Mesh>;
using PointsItem = SaveItem<PointCloud>;
using LinesItem = SaveItem<Lines>;

/// What of a tree is visible and has points, parents first.
struct SaveItems
{
    std::vector<MeshItem> meshes;
    std::vector<PointsItem> clouds;
    std::vector<LinesItem> lines;
};

/// Collects what is visible of `root` and below it; its ancestors give their transform but not their visibility.
[[nodiscard]] SaveItems collectSaveItems(const Object& root);

/// The points of one mesh or point cloud, to be written in scene coordinates.
struct PointsPart
{
    std::span<const Vector3f> points;
    std::span<const Vector3f> normals; ///< one a point, or empty
    std::span<const Color> colors;     ///< one a point, or empty
    Transform toScene = Transform::Identity();
    Color color; ///< of points without one of their own

    /// Point `i` in scene coordinates.
    [[nodiscard]] Vector3d point(std::size_t i) const { return toScene * points[i].cast<double>(); }

    [[nodiscard]] Color colorOf(std::size_t i) const { return colors.empty() ? color : colors[i]; }
};

/// The points of all meshes and, behind them, of all point clouds.
[[nodiscard]] std::vector<PointsPart> pointsParts(const SaveItems& items);

/// A mesh's triangle with the winding that its item asks for.
[[nodiscard]] inline Triangle sceneTriangle(const MeshItem& item, std::size_t i)
{
    const Triangle& triangle = item.geometry->triangles[i];
    return item.mirrored ? Triangle(triangle[0], triangle[2], triangle[1]) : triangle;
}

/// What turns a local normal into one in scene coordinates, up to its length.
[[nodiscard]] Eigen::Matrix3d normalMatrix(const Transform& toScene);

/// A normal in scene coordinates, of unit length; (0, 0, 1) where the transform leaves none.
[[nodiscard]] Vector3f sceneNormal(const Eigen::Matrix3d& normalMatrix, const Vector3f& normal);

/// Elements [begin, end) of one item, to be written together.
struct ItemBlock
{
    std::size_t item = 0;
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Cuts the elements of all items into blocks of at most `blockSize`.
/// @param count  tells how many elements an item has
template <typename Item, typename Count>
std::vector<ItemBlock> splitItems(const std::vector<Item>& items, std::size_t blockSize, const Count& count)
{
    std::vector<ItemBlock> blocks;
    for (std::size_t item = 0; item < items.size(); ++item)
    {
        const std::size_t size = count(items[item]);
        for (std::size_t begin = 0; begin < size; begin += blockSize)
            blocks.push_back({item, begin, std::min(size, begin + blockSize)});
    }
    return blocks;
}

} // namespace VX
