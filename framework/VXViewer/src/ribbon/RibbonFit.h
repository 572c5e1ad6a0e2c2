#pragma once

#include <VXViewer/Export.h>

#include <array>
#include <vector>

namespace VX
{

/// How much room a group of the ribbon takes, from what its schema says down to a single button.
enum class RibbonGroupForm
{
    Full,     ///< large and small items
    Small,    ///< all items small, with their captions
    Icons,    ///< icons only
    DropDown, ///< one button that opens the group
    Bare,     ///< icons only, without the name of the group
    Count
};

/// The width of a group in each form.
using RibbonGroupWidths = std::array<float, static_cast<std::size_t>(RibbonGroupForm::Count)>;

/// The forms in which the groups fit into `available`, changed as little as possible: all groups take one step before
/// any takes the next, from the right to the left, and a step that saves nothing is left out. What is left over in the
/// end goes back to the groups, from the left to the right.
/// @threads any
[[nodiscard]] VXVIEWER_API std::vector<RibbonGroupForm> fitRibbonGroups(const std::vector<RibbonGroupWidths>& groups,
                                                                        float available);

} // namespace VX
