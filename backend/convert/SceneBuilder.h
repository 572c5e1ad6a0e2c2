#pragma once

#include "BodyGeometry.h"
#include "StepStructure.h"
#include "StepStyles.h"

#include <VXMesh/Object.h>

#include <tl/expected.hpp>

#include <memory>
#include <string>
#include <vector>

namespace VX
{

/// A body of a node, with what the file says about it.
struct NodeBody
{
    std::string name; ///< may be empty
    std::vector<StepItem> items;
    BodyGeometry geometry;
    bool isHidden = false;
};

/// Makes the scene of a file: an Object for each instance of an assembly, an ObjectMesh for each instance of a part
/// with its sharp edges as an ObjectLines named "Edges" below it. Instances share their meshes and lines. A part of
/// several bodies is an Object above them. Names are those of the instances, else of the products.
/// @param bodies  of each node of `structure`
/// @return an Object without a name above the roots, empty when no node has a body; or one sentence for the user:
///   "The STEP file's assemblies are nested too deeply."
///   "The STEP file has more than a million parts."
/// @threads any
[[nodiscard]] tl::expected<std::shared_ptr<Object>, std::string>
buildScene(const StepStructure& structure, const StepStyles& styles, const std::vector<std::vector<NodeBody>>& bodies);

} // namespace VX
