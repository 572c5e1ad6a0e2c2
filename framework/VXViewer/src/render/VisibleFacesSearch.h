#pragma once

#include "render/SceneDrawing.h"

#include <VXViewer/Camera.h>
#include <VXViewer/VisibleFaces.h>

#include <Eigen/Core>

#include <array>
#include <vector>

namespace VX
{

/// Finds the faces that are seen in a part of a picture by comparing them with its depths: each pixel that a face
/// covers is asked whether something nearer was drawn there, and a face that covers no pixel is asked at its middle.
/// Large meshes take no longer than their part of the picture, for runs of triangles that lie elsewhere or show their
/// backs are left out as a whole.
/// @threads any; uses the TBB pool
class VXVIEWER_API VisibleFacesSearch
{
public:
    /// @param range  of the picture
    /// @param area  inside the picture, in pixels from its upper left corner, not empty
    /// @param depths  of the pixels of `area`, 0 to 1: (x, y) from its lower left corner. Kept by reference.
    VisibleFacesSearch(const SceneFrame& frame, ClipRange range, const PixelRect& area, const Eigen::ArrayXXf& depths);

    /// The meshes of `contents` with at least one face seen.
    [[nodiscard]] std::vector<VisibleFaces> find(const SceneContents& contents) const;

private:
    /// A corner of a triangle: x and y in pixels from the lower left corner of the area, z as in the depths.
    using Corner = Eigen::Vector3d;

    [[nodiscard]] FaceSet findIn_(const SceneContents::MeshItem& item) const;
    [[nodiscard]] bool shows_(const std::array<Eigen::Vector4d, 3>& corners, bool frontsOnly, double frontSign) const;
    [[nodiscard]] bool showsSide_(const Corner& a, const Corner& b, const Corner& c, bool frontsOnly,
                                  double frontSign) const;
    [[nodiscard]] bool shows_(const Corner& a, const Corner& b, const Corner& c) const;
    [[nodiscard]] bool isBehind_(int x, int y, double depth) const;

    const Eigen::ArrayXXf& depths_;
    Projection kind_;
    ClipRange range_;
    Eigen::Matrix4d view_;
    Eigen::Matrix4d areaProjection_; ///< onto the area instead of the picture
};

} // namespace VX
