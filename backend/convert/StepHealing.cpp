#include "StepHealing.h"

#include "LibraryCall.h"

#include <ShapeBuild_ReShape.hxx>
#include <ShapeFix_Edge.hxx>
#include <ShapeFix_Face.hxx>
#include <ShapeFix_Shape.hxx>
#include <ShapeFix_Shell.hxx>
#include <ShapeFix_Solid.hxx>
#include <ShapeFix_Wire.hxx>

namespace VX
{

namespace
{

constexpr Standard_Integer no = 0;

/// What a modeller wants to know about a shape, and a picture of it does not.
void skipChecks(ShapeFix_Shape& healing)
{
    healing.FixSameParameterMode() = no;
    healing.FixVertexTolMode() = no;
    ShapeFix_Face& face = *healing.FixFaceTool();
    face.FixIntersectingWiresMode() = no;
    face.FixLoopWiresMode() = no;
    ShapeFix_Wire& wire = *face.FixWireTool();
    wire.FixSelfIntersectionMode() = no;
    wire.FixNotchedEdgesMode() = no;
}

} // namespace

void healStepSolid(StepSolid& solid, HealingDepth depth)
{
    if (solid.shape.shape.IsNull())
        return;
    callLibrary(
        [&]
        {
            const Handle(ShapeFix_Shape) healing = new ShapeFix_Shape(solid.shape.shape);
            healing->SetPrecision(solid.shape.precision);
            healing->SetMaxTolerance(solid.shape.maxTolerance);
            // As the library's own reader sets it.
            healing->FixFaceTool()->FixWireTool()->FixSameParameterMode() = no;
            healing->FixSolidTool()->CreateOpenSolidMode() = Standard_False;
            if (depth == HealingDepth::Quick)
                skipChecks(*healing);
            healing->Perform();
            if (healing->Shape().IsNull())
                return;
            for (auto& [face, color] : solid.faceColors)
                face = healing->Context()->Apply(face);
            solid.shape.shape = healing->Shape();
        });
}

} // namespace VX
