#include "FaceMesh.h"

#include "LibraryCall.h"

#include <BRep_Tool.hxx>
#include <GeomAdaptor_Surface.hxx>
#include <Poly_Triangulation.hxx>
#include <TopLoc_Location.hxx>
#include <gp_Trsf.hxx>

#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

Vector3d toVector(const gp_XYZ& xyz)
{
    return {xyz.X(), xyz.Y(), xyz.Z()};
}

/// The surface's normal at given parameters; zero where it has none.
class SurfaceNormals
{
public:
    explicit SurfaceNormals(const TopoDS_Face& face)
    {
        TopLoc_Location location;
        const Handle(Geom_Surface)& surface = BRep_Tool::Surface(face, location);
        isValid_ = !surface.IsNull() && callLibrary([&] { surface_.Load(surface); });
        isPlane_ = isValid_ && surface_.GetType() == GeomAbs_Plane;
        if (isPlane_)
            planeNormal_ = at_(gp_Pnt2d(0, 0));
    }

    [[nodiscard]] Vector3d at(const gp_Pnt2d& uv) const { return isPlane_ ? planeNormal_ : at_(uv); }

    [[nodiscard]] bool isValid() const { return isValid_; }

private:
    [[nodiscard]] Vector3d at_(const gp_Pnt2d& uv) const
    {
        constexpr double parallel = 1e-9;
        gp_Pnt point;
        gp_Vec du;
        gp_Vec dv;
        if (!callLibrary([&] { surface_.D1(uv.X(), uv.Y(), point, du, dv); }))
            return Vector3d::Zero();
        const Vector3d normal = toVector(du.XYZ()).cross(toVector(dv.XYZ()));
        const double length = normal.norm();
        return length > parallel * du.Magnitude() * dv.Magnitude() && std::isfinite(length)
                   ? Vector3d(normal / length)
                   : Vector3d(Vector3d::Zero());
    }

    GeomAdaptor_Surface surface_;
    bool isValid_ = false;
    bool isPlane_ = false;
    Vector3d planeNormal_ = Vector3d::Zero();
};

/// Gives the vertices without a normal the average of their triangles'.
void completeNormals(const FaceMeshTarget& target, const FaceMeshSize& size)
{
    std::vector<std::uint32_t> missing;
    for (std::uint32_t index = 0; index < size.points; ++index)
        if (target.normals[index].isZero())
            missing.push_back(index);
    if (missing.empty())
        return;
    std::vector<Vector3d> sums(size.points, Vector3d::Zero());
    for (std::size_t k = 0; k < size.triangles; ++k)
    {
        const Triangle corners = target.triangles[k].array() - target.firstPoint;
        const Vector3d normal = (target.points[corners[1]] - target.points[corners[0]])
                                    .cross(target.points[corners[2]] - target.points[corners[0]]);
        for (const std::uint32_t corner : {corners[0], corners[1], corners[2]})
            sums[corner] += normal;
    }
    for (const std::uint32_t index : missing)
        target.normals[index] =
            sums[index].isZero() ? Vector3f(Vector3f::UnitZ()) : Vector3f(sums[index].normalized().cast<float>());
}

} // namespace

FaceMeshSize faceMeshSize(const TopoDS_Face& face)
{
    TopLoc_Location location;
    const Handle(Poly_Triangulation)& mesh = BRep_Tool::Triangulation(face, location);
    if (mesh.IsNull())
        return {};
    return {static_cast<std::size_t>(mesh->NbNodes()), static_cast<std::size_t>(mesh->NbTriangles())};
}

void writeFaceMesh(const TopoDS_Face& face, const FaceMeshTarget& target)
{
    TopLoc_Location location;
    const Handle(Poly_Triangulation)& mesh = BRep_Tool::Triangulation(face, location);
    if (mesh.IsNull())
        return;
    const gp_Trsf placement = location.Transformation();
    const bool isReversed = face.Orientation() == TopAbs_REVERSED;
    const SurfaceNormals normals(face);
    for (int index = 1; index <= mesh->NbNodes(); ++index)
    {
        target.points[index - 1] = toVector(mesh->Node(index).Transformed(placement).XYZ());
        Vector3d normal = Vector3d::Zero();
        if (normals.isValid() && mesh->HasUVNodes())
            normal = normals.at(mesh->UVNode(index));
        gp_XYZ turned(normal.x(), normal.y(), normal.z());
        turned.Multiply(placement.HVectorialPart());
        target.normals[index - 1] = (toVector(turned) * (isReversed ? -1 : 1)).cast<float>();
    }
    // A placement that mirrors turns the triangles inside out once more.
    const bool isFlipped = isReversed != placement.IsNegative();
    for (int index = 1; index <= mesh->NbTriangles(); ++index)
    {
        int a = 0;
        int b = 0;
        int c = 0;
        mesh->Triangle(index).Get(a, b, c);
        if (isFlipped)
            std::swap(b, c);
        const auto corner = [&](int node) { return target.firstPoint + static_cast<std::uint32_t>(node - 1); };
        target.triangles[index - 1] = Triangle(corner(a), corner(b), corner(c));
    }
    completeNormals(target, faceMeshSize(face));
}

} // namespace VX
