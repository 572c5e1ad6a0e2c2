#include "SolidGeometry.h"

#include "FaceColors.h"
#include "FaceMesh.h"
#include "SharpEdges.h"

#include <BRep_Builder.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <framework/VXMesh/src/formats/PointOffset.h>
#include <tbb/parallel_for.h>

namespace VX
{

namespace
{

/// All faces of a body, each once, with the place of its vertices and triangles in the mesh.
struct BodyFaces
{
    TopoDS_Compound shape;
    TopTools_IndexedMapOfShape faces;
    std::vector<std::uint32_t> firstPoints;
    std::vector<std::size_t> firstTriangles;
    std::vector<std::optional<Color>> colors;
    std::size_t pointCount = 0;
    std::size_t triangleCount = 0;
};

void addColors(BodyFaces& body, const StepSolid& solid, int firstNew)
{
    body.colors.resize(static_cast<std::size_t>(body.faces.Extent()), solid.color);
    for (const auto& [shape, color] : solid.faceColors)
    {
        // Healing may have split a face.
        TopTools_IndexedMapOfShape parts;
        if (!shape.IsNull())
            TopExp::MapShapes(shape, TopAbs_FACE, parts);
        for (int part = 1; part <= parts.Extent(); ++part)
            if (const int index = body.faces.FindIndex(parts.FindKey(part)); index >= firstNew)
                body.colors[static_cast<std::size_t>(index - 1)] = color;
    }
}

void collectFaces(std::span<const StepSolid* const> solids, BodyFaces& body)
{
    BRep_Builder builder;
    builder.MakeCompound(body.shape);
    for (const StepSolid* solid : solids)
    {
        if (solid->shape.shape.IsNull())
            continue;
        const int firstNew = body.faces.Extent() + 1;
        builder.Add(body.shape, solid->shape.shape);
        TopExp::MapShapes(solid->shape.shape, TopAbs_FACE, body.faces);
        addColors(body, *solid, firstNew);
    }
    for (int face = 1; face <= body.faces.Extent(); ++face)
    {
        const FaceMeshSize size = faceMeshSize(TopoDS::Face(body.faces.FindKey(face)));
        body.firstPoints.push_back(static_cast<std::uint32_t>(body.pointCount));
        body.firstTriangles.push_back(body.triangleCount);
        body.pointCount += size.points;
        body.triangleCount += size.triangles;
    }
}

std::shared_ptr<const Lines> makeLines(const BodyFaces& body, const Mesh& mesh)
{
    auto lines = std::make_shared<Lines>();
    for (const std::vector<std::uint32_t>& edge :
         findSharpEdges(body.shape, body.faces, body.firstPoints, mesh.normals))
        for (std::size_t k = 0; k < edge.size(); ++k)
        {
            if (k > 0)
            {
                const auto last = static_cast<std::uint32_t>(lines->points.size());
                lines->segments.emplace_back(last - 1, last);
            }
            lines->points.push_back(mesh.points[edge[k]]);
        }
    return lines->segments.empty() ? nullptr : lines;
}

} // namespace

std::optional<BodyGeometry> makeSolidGeometry(std::span<const StepSolid* const> solids)
{
    BodyFaces body;
    collectFaces(solids, body);
    if (body.triangleCount == 0)
        return std::nullopt;

    const auto mesh = std::make_shared<Mesh>();
    std::vector<Vector3d> points(body.pointCount);
    mesh->normals.resize(body.pointCount);
    mesh->triangles.resize(body.triangleCount);
    tbb::parallel_for(std::size_t{0}, body.firstPoints.size(),
                      [&](std::size_t face)
                      {
                          const std::uint32_t first = body.firstPoints[face];
                          writeFaceMesh(TopoDS::Face(body.faces.FindKey(static_cast<int>(face) + 1)),
                                        {points.data() + first, mesh->normals.data() + first,
                                         mesh->triangles.data() + body.firstTriangles[face], first});
                      });
    BodyGeometry geometry;
    mesh->points = subtractOffset(points, geometry.offset);
    if (!isDrawable(*mesh))
        return std::nullopt;
    const std::optional<Color> uniform = applyFaceColors(*mesh, body.firstTriangles, body.colors);
    geometry.color = uniform ? uniform : solids.front()->color;
    geometry.edges = makeLines(body, *mesh);
    geometry.mesh = mesh;
    return geometry;
}

} // namespace VX
