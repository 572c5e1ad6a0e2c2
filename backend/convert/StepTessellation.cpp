#include "StepTessellation.h"

#include "LibraryCall.h"
#include "StepHealing.h"

#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <tbb/parallel_for.h>

#include <cmath>

namespace VX
{

namespace
{

/// The mesher takes no tolerance below this.
constexpr double smallestDeflection = 1e-6;

bool hasUnmeshedFace(const TopoDS_Shape& shape)
{
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next())
    {
        TopLoc_Location location;
        if (BRep_Tool::Triangulation(TopoDS::Face(faces.Current()), location).IsNull())
            return true;
    }
    return false;
}

void mesh(const TopoDS_Shape& shape, double diagonal)
{
    if (shape.IsNull())
        return;
    IMeshTools_Parameters parameters;
    parameters.Deflection = std::max(diagonal * chordTolerance, smallestDeflection);
    parameters.Angle = angleTolerance;
    parameters.InParallel = Standard_True;
    callLibrary([&] { const BRepMesh_IncrementalMesh mesher(shape, parameters); });
}

} // namespace

void healStepSolids(std::span<StepSolid> solids)
{
    tbb::parallel_for(std::size_t{0}, solids.size(),
                      [&](std::size_t index) { healStepSolid(solids[index], HealingDepth::Quick); });
}

double diagonalOf(std::span<const StepSolid* const> solids)
{
    Bnd_Box box;
    for (const StepSolid* solid : solids)
        if (!solid->shape.shape.IsNull())
            callLibrary([&] { BRepBndLib::Add(solid->shape.shape, box, Standard_False); });
    if (box.IsVoid() || box.IsOpen())
        return 0;
    return std::sqrt(box.SquareExtent());
}

void tessellateStepSolids(std::span<const TessellationTask> tasks)
{
    tbb::parallel_for(std::size_t{0}, tasks.size(),
                      [&](std::size_t index)
                      {
                          StepSolid& solid = *tasks[index].solid;
                          mesh(solid.shape.shape, tasks[index].diagonal);
                          if (solid.shape.shape.IsNull() || !hasUnmeshedFace(solid.shape.shape))
                              return;
                          healStepSolid(solid, HealingDepth::Thorough);
                          mesh(solid.shape.shape, tasks[index].diagonal);
                      });
}

} // namespace VX
