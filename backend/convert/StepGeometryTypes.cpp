#include "StepGeometryTypes.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <unordered_map>
#include <vector>

namespace VX
{

namespace
{

/// What instances are to those that refer to them; a set of bits.
using Kinds = std::uint32_t;

constexpr Kinds unknown = 0;
constexpr Kinds point = 1U << 0U;
constexpr Kinds direction = 1U << 1U;
constexpr Kinds vector = 1U << 2U;
constexpr Kinds axis = 1U << 3U;
constexpr Kinds placement = 1U << 4U;
constexpr Kinds planePlacement = 1U << 5U;
constexpr Kinds curve = 1U << 6U;
constexpr Kinds parameterCurve = 1U << 7U;
constexpr Kinds surface = 1U << 8U;
constexpr Kinds vertex = 1U << 9U;
constexpr Kinds edge = 1U << 10U;
constexpr Kinds orientedEdge = 1U << 11U;
constexpr Kinds loop = 1U << 12U;
constexpr Kinds bound = 1U << 13U;
constexpr Kinds face = 1U << 14U;
constexpr Kinds shell = 1U << 15U;

struct GeometryType
{
    Kinds kind = unknown;
    std::vector<Kinds> needs;  ///< of its references in order, the last for all further ones; empty: anything
    Kinds needsLast = unknown; ///< of its last reference, where it differs
};

using GeometryTypes = std::unordered_map<StepType, GeometryType>;

void add(GeometryTypes& types, std::initializer_list<StepType> names, const GeometryType& type)
{
    for (const StepType name : names)
        types.emplace(name, type);
}

GeometryTypes makeGeometryTypes()
{
    GeometryTypes types;
    add(types, {"CARTESIAN_POINT"_step}, {point, {}});
    add(types, {"DIRECTION"_step}, {direction, {}});
    add(types, {"VECTOR"_step}, {vector, {direction}});
    add(types, {"AXIS1_PLACEMENT"_step}, {axis, {point, direction}});
    add(types, {"AXIS2_PLACEMENT_2D"_step}, {planePlacement, {point, direction}});
    add(types, {"AXIS2_PLACEMENT_3D"_step}, {placement, {point, direction}});

    add(types, {"LINE"_step}, {curve, {point, vector}});
    add(types, {"CIRCLE"_step, "ELLIPSE"_step, "HYPERBOLA"_step, "PARABOLA"_step},
        {curve, {placement | planePlacement}});
    add(types,
        {"POLYLINE"_step, "B_SPLINE_CURVE_WITH_KNOTS"_step, "BEZIER_CURVE"_step, "UNIFORM_CURVE"_step,
         "QUASI_UNIFORM_CURVE"_step},
        {curve, {point}});
    add(types, {"TRIMMED_CURVE"_step}, {curve, {curve, point}});
    add(types, {"SURFACE_CURVE"_step, "SEAM_CURVE"_step, "INTERSECTION_CURVE"_step},
        {curve, {curve, parameterCurve | surface}});
    add(types, {"PCURVE"_step}, {parameterCurve, {surface, unknown}});

    add(types,
        {"PLANE"_step, "CYLINDRICAL_SURFACE"_step, "CONICAL_SURFACE"_step, "SPHERICAL_SURFACE"_step,
         "TOROIDAL_SURFACE"_step, "DEGENERATE_TOROIDAL_SURFACE"_step},
        {surface, {placement}});
    add(types,
        {"B_SPLINE_SURFACE_WITH_KNOTS"_step, "BEZIER_SURFACE"_step, "UNIFORM_SURFACE"_step,
         "QUASI_UNIFORM_SURFACE"_step},
        {surface, {point}});
    add(types, {"SURFACE_OF_LINEAR_EXTRUSION"_step}, {surface, {curve, vector}});
    add(types, {"SURFACE_OF_REVOLUTION"_step}, {surface, {curve, axis}});
    add(types, {"OFFSET_SURFACE"_step, "RECTANGULAR_TRIMMED_SURFACE"_step}, {surface, {surface}});

    add(types, {"VERTEX_POINT"_step}, {vertex, {point}});
    add(types, {"EDGE_CURVE"_step}, {edge, {vertex, vertex, curve}});
    // The vertices of an oriented edge follow from its edge; some writers name them all the same.
    add(types, {"ORIENTED_EDGE"_step}, {orientedEdge, {vertex | edge}, edge});
    add(types, {"EDGE_LOOP"_step}, {loop, {orientedEdge}});
    add(types, {"VERTEX_LOOP"_step}, {loop, {vertex}});
    add(types, {"POLY_LOOP"_step}, {loop, {point}});
    add(types, {"FACE_BOUND"_step, "FACE_OUTER_BOUND"_step}, {bound, {loop}});
    add(types, {"ADVANCED_FACE"_step, "FACE_SURFACE"_step}, {face, {bound}, surface});
    add(types, {"CLOSED_SHELL"_step, "OPEN_SHELL"_step, "CONNECTED_FACE_SET"_step}, {shell, {face}});
    add(types, {"ORIENTED_CLOSED_SHELL"_step, "ORIENTED_OPEN_SHELL"_step}, {shell, {shell}});
    add(types,
        {"MANIFOLD_SOLID_BREP"_step, "FACETED_BREP"_step, "BREP_WITH_VOIDS"_step, "SHELL_BASED_SURFACE_MODEL"_step,
         "FACE_BASED_SURFACE_MODEL"_step},
        {unknown, {shell}});
    return types;
}

const GeometryType& geometryType(StepType type)
{
    static const GeometryTypes types = makeGeometryTypes();
    static const GeometryType other;
    const auto found = types.find(type);
    return found == types.end() ? other : found->second;
}

} // namespace

bool mayReferTo(StepType from, std::size_t position, std::size_t count, StepType to)
{
    const GeometryType& type = geometryType(from);
    const Kinds kind = geometryType(to).kind;
    if (type.needs.empty() || kind == unknown)
        return true;
    const bool isLast = position + 1 == count && type.needsLast != unknown;
    const Kinds needed = isLast ? type.needsLast : type.needs[std::min(position, type.needs.size() - 1)];
    return needed == unknown || (needed & kind) != 0;
}

} // namespace VX
