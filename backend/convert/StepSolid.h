#pragma once

#include "StepReader.h"

#include <VXMesh/Geometry.h>

#include <optional>
#include <utility>
#include <vector>

namespace VX
{

/// A solid or surface model with its colours.
struct StepSolid
{
    StepShape shape;
    std::optional<Color> color;                             ///< of the whole
    std::vector<std::pair<TopoDS_Shape, Color>> faceColors; ///< of faces with one of their own
};

} // namespace VX
