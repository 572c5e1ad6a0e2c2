#include "SharpEdges.h"

#include <BRep_Tool.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp.hxx>
#include <TopLoc_Location.hxx>
#include <TopTools_IndexedDataMapOfShapeListOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>

#include <algorithm>

namespace VX
{

namespace
{

/// The cosine of 3 degrees: smooth joints of imported surfaces are off by a degree or two.
constexpr float smoothCosine = 0.99863F;

using Polyline = std::vector<std::uint32_t>;

class EdgeFinder
{
public:
    EdgeFinder(const TopTools_IndexedMapOfShape& faces, const std::vector<std::uint32_t>& firstPoints,
               const std::vector<Vector3f>& normals)
        : faces_(faces)
        , firstPoints_(firstPoints)
        , normals_(normals)
    {
    }

    /// The polylines of an edge in the faces that it bounds; a seam has two in one face.
    [[nodiscard]] std::vector<Polyline> polylines(const TopoDS_Edge& edge, const TopTools_ListOfShape& neighbours) const
    {
        std::vector<Polyline> lines;
        std::vector<int> seen;
        for (TopTools_ListOfShape::Iterator neighbour(neighbours); neighbour.More(); neighbour.Next())
        {
            const int index = faces_.FindIndex(neighbour.Value());
            if (index == 0 || std::ranges::find(seen, index) != seen.end())
                continue;
            seen.push_back(index);
            const TopoDS_Face& face = TopoDS::Face(faces_.FindKey(index));
            append_(lines, edge, face, index);
            if (BRep_Tool::IsClosed(edge, face))
                append_(lines, TopoDS::Edge(edge.Reversed()), face, index);
        }
        return lines;
    }

    [[nodiscard]] bool isSharp(const std::vector<Polyline>& lines) const
    {
        if (lines.size() != 2 || lines[0].size() != lines[1].size())
            return true;
        // The ends are often corners or tips, where the normals say little about the edge; a straight edge has only
        // them.
        const std::size_t count = lines[0].size();
        if (count == 2)
            return isCreased_(lines, 0) && isCreased_(lines, 1);
        for (std::size_t k = 1; k + 1 < count; ++k)
            if (isCreased_(lines, k))
                return true;
        return false;
    }

private:
    void append_(std::vector<Polyline>& lines, const TopoDS_Edge& edge, const TopoDS_Face& face, int index) const
    {
        TopLoc_Location location;
        const Handle(Poly_Triangulation)& mesh = BRep_Tool::Triangulation(face, location);
        if (mesh.IsNull())
            return;
        const Handle(Poly_PolygonOnTriangulation)& polygon = BRep_Tool::PolygonOnTriangulation(edge, mesh, location);
        if (polygon.IsNull() || polygon->NbNodes() < 2)
            return;
        const std::uint32_t firstPoint = firstPoints_[static_cast<std::size_t>(index - 1)];
        Polyline line;
        for (int number = 1; number <= polygon->NbNodes(); ++number)
            line.push_back(firstPoint + static_cast<std::uint32_t>(polygon->Node(number) - 1));
        lines.push_back(std::move(line));
    }

    [[nodiscard]] bool isCreased_(const std::vector<Polyline>& lines, std::size_t at) const
    {
        return normals_[lines[0][at]].dot(normals_[lines[1][at]]) < smoothCosine;
    }

    const TopTools_IndexedMapOfShape& faces_;
    const std::vector<std::uint32_t>& firstPoints_;
    const std::vector<Vector3f>& normals_;
};

} // namespace

std::vector<Polyline> findSharpEdges(const TopoDS_Shape& shape, const TopTools_IndexedMapOfShape& faces,
                                     const std::vector<std::uint32_t>& firstPoints,
                                     const std::vector<Vector3f>& normals)
{
    const EdgeFinder finder(faces, firstPoints, normals);
    TopTools_IndexedDataMapOfShapeListOfShape edges;
    TopExp::MapShapesAndAncestors(shape, TopAbs_EDGE, TopAbs_FACE, edges);
    std::vector<Polyline> sharp;
    for (int index = 1; index <= edges.Extent(); ++index)
    {
        const TopoDS_Edge& edge = TopoDS::Edge(edges.FindKey(index));
        if (BRep_Tool::Degenerated(edge))
            continue;
        std::vector<Polyline> lines = finder.polylines(edge, edges.FindFromIndex(index));
        if (!lines.empty() && finder.isSharp(lines))
            sharp.push_back(std::move(lines.front()));
    }
    return sharp;
}

} // namespace VX
