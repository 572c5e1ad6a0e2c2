#include "Parts.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRepAlgoAPI_Common.hxx>
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepFilletAPI_MakeChamfer.hxx>
#include <BRepFilletAPI_MakeFillet.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <ShapeUpgrade_UnifySameDomain.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <gp_Ax2.hxx>

#include <cmath>
#include <numbers>

namespace Sample
{

namespace
{

constexpr double flangeLength = 120;
constexpr double flangeWidth = 64;
constexpr double uprightWidth = 28;
constexpr double uprightRadius = 34;
constexpr double boltRadius = 4;

TopoDS_Shape cylinder(const gp_Pnt& base, const gp_Dir& axis, double radius, double height)
{
    return BRepPrimAPI_MakeCylinder(gp_Ax2(base, axis), radius, height).Shape();
}

/// A cylinder along Y, in the middle of it.
TopoDS_Shape alongY(double x, double z, double radius, double length)
{
    return cylinder(gp_Pnt(x, -length / 2, z), gp_Dir(0, 1, 0), radius, length);
}

TopoDS_Shape box(const gp_Pnt& from, const gp_Pnt& to)
{
    return BRepPrimAPI_MakeBox(from, to).Shape();
}

/// Faces and edges that are one in truth.
TopoDS_Shape unified(const TopoDS_Shape& shape)
{
    ShapeUpgrade_UnifySameDomain unify(shape);
    unify.Build();
    return unify.Shape();
}

template <typename Select>
TopoDS_Shape rounded(const TopoDS_Shape& shape, double radius, Select select)
{
    BRepFilletAPI_MakeFillet fillet(shape);
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(shape, TopAbs_EDGE, edges);
    for (int index = 1; index <= edges.Extent(); ++index)
    {
        const BRepAdaptor_Curve curve(TopoDS::Edge(edges(index)));
        if (select(curve.Value((curve.FirstParameter() + curve.LastParameter()) / 2), curve.GetType()))
            fillet.Add(radius, TopoDS::Edge(edges(index)));
    }
    return fillet.Shape();
}

template <typename Select>
TopoDS_Shape chamfered(const TopoDS_Shape& shape, double length, Select select)
{
    BRepFilletAPI_MakeChamfer chamfer(shape);
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(shape, TopAbs_EDGE, edges);
    for (int index = 1; index <= edges.Extent(); ++index)
    {
        const BRepAdaptor_Curve curve(TopoDS::Edge(edges(index)));
        if (curve.GetType() == GeomAbs_Circle && select(curve.Circle()))
            chamfer.Add(length, TopoDS::Edge(edges(index)));
    }
    return chamfer.Shape();
}

bool isNear(double a, double b)
{
    return std::abs(a - b) < 1e-6;
}

/// The faces on cylinders of this radius.
std::vector<TopoDS_Face> cylinderFaces(const TopoDS_Shape& shape, double radius)
{
    std::vector<TopoDS_Face> found;
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    for (int index = 1; index <= faces.Extent(); ++index)
    {
        const BRepAdaptor_Surface surface(TopoDS::Face(faces(index)));
        if (surface.GetType() == GeomAbs_Cylinder && isNear(surface.Cylinder().Radius(), radius))
            found.push_back(TopoDS::Face(faces(index)));
    }
    return found;
}

TopoDS_Shape hexagon(double acrossFlats, double height)
{
    BRepBuilderAPI_MakePolygon outline;
    const double radius = acrossFlats / std::numbers::sqrt3;
    for (int corner = 0; corner < 6; ++corner)
    {
        const double angle = corner * std::numbers::pi / 3;
        outline.Add(gp_Pnt(radius * std::cos(angle), radius * std::sin(angle), 0));
    }
    outline.Close();
    return BRepPrimAPI_MakePrism(BRepBuilderAPI_MakeFace(outline.Wire()).Face(), gp_Vec(0, 0, height)).Shape();
}

} // namespace

Part makeBlock()
{
    const double x = flangeLength / 2;
    const double y = flangeWidth / 2;
    TopoDS_Shape flange = box(gp_Pnt(-x, -y, 0), gp_Pnt(x, y, flangeHeight));
    flange = rounded(flange, 12,
                     [](const gp_Pnt& middle, GeomAbs_CurveType) { return isNear(middle.Z(), flangeHeight / 2); });
    flange =
        rounded(flange, 2, [](const gp_Pnt& middle, GeomAbs_CurveType) { return isNear(middle.Z(), flangeHeight); });

    TopoDS_Shape upright =
        box(gp_Pnt(-uprightRadius, -uprightWidth / 2, 1), gp_Pnt(uprightRadius, uprightWidth / 2, boreHeight));
    upright = unified(BRepAlgoAPI_Fuse(upright, alongY(0, boreHeight, uprightRadius, uprightWidth)).Shape());
    TopoDS_Shape shape = unified(BRepAlgoAPI_Fuse(flange, upright).Shape());
    // The foot of the upright, where it meets the flange.
    shape = rounded(shape, 5,
                    [](const gp_Pnt& middle, GeomAbs_CurveType type)
                    {
                        return type == GeomAbs_Line && isNear(middle.Z(), flangeHeight) &&
                               std::abs(middle.X()) < uprightRadius + 1 && std::abs(middle.Y()) < uprightWidth / 2 + 1;
                    });
    shape = BRepAlgoAPI_Cut(shape, alongY(0, boreHeight, boreRadius, flangeWidth)).Shape();
    for (const double sideX : {-boltX, boltX})
        for (const double sideY : {-boltY, boltY})
        {
            shape = BRepAlgoAPI_Cut(shape, cylinder(gp_Pnt(sideX, sideY, -1), gp_Dir(0, 0, 1), boltRadius + 0.5, 40))
                        .Shape();
            shape = BRepAlgoAPI_Cut(shape, cylinder(gp_Pnt(sideX, sideY, flangeHeight - 1), gp_Dir(0, 0, 1), 10, 10))
                        .Shape();
        }
    shape = chamfered(shape, 1.5, [](const gp_Circ& circle) { return isNear(circle.Radius(), boreRadius); });

    Part block{shape, cylinderFaces(shape, boreRadius)};
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    for (int index = 1; index <= faces.Extent(); ++index)
    {
        const TopoDS_Face face = TopoDS::Face(faces(index));
        const BRepAdaptor_Surface surface(face);
        const bool isSpotFace =
            surface.GetType() == GeomAbs_Plane && isNear(surface.Plane().Location().Z(), flangeHeight - 1);
        if (isSpotFace || surface.GetType() == GeomAbs_Cone)
            block.brightFaces.push_back(face);
    }
    return block;
}

Part makeRing(double innerRadius, double outerRadius, double width)
{
    TopoDS_Shape ring = BRepAlgoAPI_Cut(alongY(0, 0, outerRadius, width), alongY(0, 0, innerRadius, width + 2)).Shape();
    ring = chamfered(ring, 0.6, [](const gp_Circ&) { return true; });
    return {ring, {}};
}

Part makeRace(double innerRadius, double outerRadius)
{
    const TopoDS_Shape groove =
        BRepPrimAPI_MakeTorus(gp_Ax2(gp_Pnt(0, 0, 0), gp_Dir(0, 1, 0)), ballCircle, ballRadius + 0.05).Shape();
    return {BRepAlgoAPI_Cut(makeRing(innerRadius, outerRadius, bearingWidth).shape, groove).Shape(), {}};
}

Part makeBall()
{
    return {BRepPrimAPI_MakeSphere(ballRadius).Shape(), {}};
}

Part makeShaft()
{
    constexpr double length = 130;
    TopoDS_Shape shaft = alongY(0, 0, shaftRadius, length);
    shaft = chamfered(shaft, 1.5, [](const gp_Circ&) { return true; });
    const TopoDS_Shape keyway =
        BRepAlgoAPI_Fuse(
            box(gp_Pnt(-3, -length / 2 + 8, shaftRadius - 3.5), gp_Pnt(3, -length / 2 + 32, shaftRadius + 1)),
            BRepAlgoAPI_Fuse(cylinder(gp_Pnt(0, -length / 2 + 8, shaftRadius - 3.5), gp_Dir(0, 0, 1), 3, 5),
                             cylinder(gp_Pnt(0, -length / 2 + 32, shaftRadius - 3.5), gp_Dir(0, 0, 1), 3, 5))
                .Shape())
            .Shape();
    return {BRepAlgoAPI_Cut(shaft, unified(keyway)).Shape(), {}};
}

Part makeBolt()
{
    constexpr double headHeight = 5.3;
    constexpr double shankLength = 22;
    // A cone takes the corners off the hexagon.
    const TopoDS_Shape cone =
        BRepPrimAPI_MakeCone(gp_Ax2(gp_Pnt(0, 0, -2), gp_Dir(0, 0, 1)), 18, 6.2, headHeight + 2).Shape();
    const TopoDS_Shape head = BRepAlgoAPI_Common(hexagon(13, headHeight), cone).Shape();
    TopoDS_Shape shank = cylinder(gp_Pnt(0, 0, -shankLength), gp_Dir(0, 0, 1), boltRadius, shankLength + 1);
    shank = chamfered(shank, 0.8, [](const gp_Circ& circle) { return isNear(circle.Location().Z(), -shankLength); });
    return {BRepAlgoAPI_Fuse(head, shank).Shape(), {}};
}

Part makeWasher()
{
    TopoDS_Shape washer = BRepAlgoAPI_Cut(cylinder(gp_Pnt(0, 0, 0), gp_Dir(0, 0, 1), 8, washerHeight),
                                          cylinder(gp_Pnt(0, 0, -1), gp_Dir(0, 0, 1), boltRadius + 0.3, 4))
                              .Shape();
    return {chamfered(washer, 0.3, [](const gp_Circ& circle) { return isNear(circle.Radius(), 8); }), {}};
}

} // namespace Sample
