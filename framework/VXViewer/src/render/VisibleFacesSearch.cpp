#include "render/VisibleFacesSearch.h"

#include <Eigen/LU>
#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace VX
{

namespace
{

constexpr std::size_t kClusterGrain = 32;

/// The graphics reckon in floats.
constexpr double kDepthRounding = 1e-6;

/// Clusters begin at whole words of a set of faces, so that each thread writes words of its own.
static_assert(MeshAnalysis::clusterTriangles % FaceSet::bitsInWord == 0);

/// From the clip space of the picture to that of a part of it.
Eigen::Matrix4d zoomTo(const PixelRect& area, PixelSize picture)
{
    const double scaleX = static_cast<double>(picture.width) / area.width;
    const double scaleY = static_cast<double>(picture.height) / area.height;
    Eigen::Matrix4d zoom = Eigen::Matrix4d::Identity();
    zoom(0, 0) = scaleX;
    zoom(1, 1) = scaleY;
    zoom(0, 3) = scaleX - 1 - 2.0 * area.x / area.width;
    zoom(1, 3) = scaleY - 1 - 2.0 * (picture.height - area.y - area.height) / area.height;
    return zoom;
}

/// From clip space to pixels and to the depths of the buffer, each times w.
Eigen::Matrix4d toPixels(Eigen::Index width, Eigen::Index height)
{
    Eigen::Matrix4d pixels = Eigen::Matrix4d::Zero();
    pixels.diagonal() << static_cast<double>(width) / 2, static_cast<double>(height) / 2, 0.5, 1;
    pixels.col(3) << static_cast<double>(width) / 2, static_cast<double>(height) / 2, 0.5, 1;
    return pixels;
}

/// The part of a triangle on this side of the near plane: three or four corners, or none.
struct ClippedTriangle
{
    std::array<Eigen::Vector4d, 4> corners;
    int count = 0;
};

ClippedTriangle clip(const std::array<Eigen::Vector4d, 3>& corners)
{
    ClippedTriangle result;
    for (std::size_t i = 0; i < 3; ++i)
    {
        const Eigen::Vector4d& a = corners[i];
        const Eigen::Vector4d& b = corners[(i + 1) % 3];
        if (a.z() >= 0)
            result.corners[static_cast<std::size_t>(result.count++)] = a;
        if ((a.z() >= 0) != (b.z() >= 0))
            result.corners[static_cast<std::size_t>(result.count++)] = a + (b - a) * (a.z() / (a.z() - b.z()));
    }
    return result;
}

Vector3d seenAt(const Eigen::Vector4d& corner)
{
    return corner.head<3>() * (1 / corner.w());
}

} // namespace

VisibleFacesSearch::VisibleFacesSearch(const SceneFrame& frame, ClipRange range, const PixelRect& area,
                                       const Eigen::ArrayXXf& depths)
    : depths_(depths)
    , kind_(frame.camera.projection())
    , range_(range)
    , view_(frame.camera.viewMatrix())
    , areaProjection_(zoomTo(area, frame.size) * frame.camera.projectionMatrix(frame.size, range))
{
}

std::vector<VisibleFaces> VisibleFacesSearch::find(const SceneContents& contents) const
{
    std::vector<VisibleFaces> result;
    for (const SceneContents::MeshItem& item : contents.meshes)
    {
        if (item.gpu->levels.empty())
            continue;
        FaceSet faces = findIn_(item);
        if (faces.any())
            result.push_back({item.object, std::move(faces)});
    }
    return result;
}

FaceSet VisibleFacesSearch::findIn_(const SceneContents::MeshItem& item) const
{
    const Mesh& mesh = *item.object->mesh();
    FaceSet faces(mesh.triangles.size());
    const Eigen::Matrix4d toCamera = view_ * (item.world * Eigen::Translation3d(item.gpu->center)).matrix();
    const ViewVolume volume(toCamera, areaProjection_, kind_);
    if (!volume.mayShow(item.gpu->box))
        return faces;
    const bool frontsOnly = hidesBacks(*item.gpu, toCamera, range_);
    const double frontSign = toCamera.topLeftCorner<3, 3>().determinant() < 0 ? -1 : 1;
    const Eigen::Matrix4d place = toPixels(depths_.rows(), depths_.cols()) * areaProjection_ * toCamera;
    const Vector3f center = item.gpu->center.cast<float>();
    const auto cornerOf = [&](std::uint32_t point) -> Eigen::Vector4d
    { return place * (mesh.points[point] - center).cast<double>().homogeneous(); };

    const std::vector<MeshCluster>& clusters = item.gpu->levels.front().clusters;
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, clusters.size(), kClusterGrain),
                      [&](const tbb::blocked_range<std::size_t>& range)
                      {
                          for (std::size_t i = range.begin(); i != range.end(); ++i)
                          {
                              const MeshCluster& cluster = clusters[i];
                              if (!volume.mayShow(cluster.box) ||
                                  (frontsOnly && volume.facesAway(cluster.box, cluster.normals)))
                                  continue;
                              const std::uint32_t end = cluster.firstTriangle + cluster.triangleCount;
                              for (std::uint32_t face = cluster.firstTriangle; face < end; ++face)
                              {
                                  const Triangle& t = mesh.triangles[face];
                                  if (shows_({cornerOf(t[0]), cornerOf(t[1]), cornerOf(t[2])}, frontsOnly, frontSign))
                                      faces.set(face);
                              }
                          }
                      });
    return faces;
}

bool VisibleFacesSearch::shows_(const std::array<Eigen::Vector4d, 3>& corners, bool frontsOnly, double frontSign) const
{
    if (corners[0].z() >= 0 && corners[1].z() >= 0 && corners[2].z() >= 0)
        return showsSide_(seenAt(corners[0]), seenAt(corners[1]), seenAt(corners[2]), frontsOnly, frontSign);
    const ClippedTriangle clipped = clip(corners);
    for (std::size_t i = 2; i < static_cast<std::size_t>(clipped.count); ++i)
    {
        if (showsSide_(seenAt(clipped.corners[0]), seenAt(clipped.corners[i - 1]), seenAt(clipped.corners[i]),
                       frontsOnly, frontSign))
            return true;
    }
    return false;
}

bool VisibleFacesSearch::showsSide_(const Corner& a, const Corner& b, const Corner& c, bool frontsOnly,
                                    double frontSign) const
{
    const double area = (b.x() - a.x()) * (c.y() - a.y()) - (b.y() - a.y()) * (c.x() - a.x());
    if (frontsOnly && area * frontSign <= 0)
        return false;
    // Counter-clockwise from here on.
    return area >= 0 ? shows_(a, b, c) : shows_(a, c, b);
}

bool VisibleFacesSearch::shows_(const Corner& a, const Corner& b, const Corner& c) const
{
    const double left = std::min({a.x(), b.x(), c.x()});
    const double right = std::max({a.x(), b.x(), c.x()});
    const double low = std::min({a.y(), b.y(), c.y()});
    const double high = std::max({a.y(), b.y(), c.y()});
    const auto width = static_cast<double>(depths_.rows());
    const auto height = static_cast<double>(depths_.cols());
    if (right < 0 || high < 0 || left >= width || low >= height)
        return false;

    // The depth as a plane over the pixels. What was drawn lies farther back by as much as the depth changes over a
    // pixel, at least; the same again is for the way from the middle of a pixel to a face smaller than that.
    const Corner ab = b - a;
    const Corner ac = c - a;
    const double area = ab.x() * ac.y() - ab.y() * ac.x();
    const double slopeX = area > 0 ? (ab.z() * ac.y() - ac.z() * ab.y()) / area : 0;
    const double slopeY = area > 0 ? (ac.z() * ab.x() - ab.z() * ac.x()) / area : 0;
    const double slack = std::max(std::abs(slopeX), std::abs(slopeY)) + kDepthRounding;

    bool coversPixel = false;
    const int x0 = static_cast<int>(std::ceil(std::max(left, 0.0) - 0.5));
    const int x1 = static_cast<int>(std::floor(std::min(right, width) - 0.5));
    const int y0 = static_cast<int>(std::ceil(std::max(low, 0.0) - 0.5));
    const int y1 = static_cast<int>(std::floor(std::min(high, height) - 0.5));
    const auto sideOf = [](const Corner& from, const Corner& to, double x, double y)
    { return (to.x() - from.x()) * (y - from.y()) - (to.y() - from.y()) * (x - from.x()); };
    for (int y = y0; y <= y1; ++y)
    {
        for (int x = x0; x <= x1; ++x)
        {
            const double px = x + 0.5;
            const double py = y + 0.5;
            if (sideOf(a, b, px, py) < 0 || sideOf(b, c, px, py) < 0 || sideOf(c, a, px, py) < 0)
                continue;
            coversPixel = true;
            if (!isBehind_(x, y, a.z() + slopeX * (px - a.x()) + slopeY * (py - a.y()) - slack))
                return true;
        }
    }
    const Corner middle = (a + b + c) / 3;
    if (coversPixel || middle.x() < 0 || middle.y() < 0 || middle.x() >= width || middle.y() >= height)
        return false;
    return !isBehind_(static_cast<int>(middle.x()), static_cast<int>(middle.y()), middle.z() - slack);
}

bool VisibleFacesSearch::isBehind_(int x, int y, double depth) const
{
    return depth > static_cast<double>(depths_(x, y));
}

} // namespace VX
