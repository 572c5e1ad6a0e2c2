#pragma once

#include "StepFile.h"

#include <VXMesh/Geometry.h>

#include <cstddef>
#include <string>
#include <vector>

namespace VX
{

/// A solid, surface model or tessellated body, and the representation whose units it is in.
struct StepItem
{
    StepIndex item = noStepInstance;
    StepIndex representation = noStepInstance;
    StepIndex context = noStepInstance; ///< the representation's, with the units; may be none
};

/// One use of a node in another.
struct StepChild
{
    std::size_t node = 0;
    StepIndex usage = noStepInstance;            ///< the usage occurrence or the mapped item
    bool isProduct = false;                      ///< a product in an assembly, not just mapped geometry
    std::string name;                            ///< of the instance, may be empty
    Transform transform = Transform::Identity(); ///< to the coordinates of the parent, millimetres
};

/// A part, an assembly, or both.
struct StepNode
{
    std::string name;                  ///< may be empty
    std::vector<StepItem> solids;      ///< exact geometry, for the library to translate
    std::vector<StepItem> tessellated; ///< triangles
    std::vector<StepChild> children;
};

/// The assembly graph of a file: nodes shared by all their uses. Without circles, and every node has geometry, its own
/// or that of a node below it.
struct StepStructure
{
    std::vector<StepNode> nodes;
    std::vector<std::size_t> roots; ///< into `nodes`, in file order
};

/// Reads the product structure. Products come from PRODUCT_DEFINITIONs, their uses from
/// NEXT_ASSEMBLY_USAGE_OCCURRENCEs and MAPPED_ITEMs, their geometry from the representations of their shapes and those
/// related to them. A file without products gives a node for each representation with geometry that no other maps.
/// @threads any
[[nodiscard]] StepStructure readStepStructure(const StepFile& file);

/// The name to show for what a file calls `name`: writers put stand-ins where they know none, and those give "".
[[nodiscard]] std::string usableStepName(const std::string& name);

} // namespace VX
