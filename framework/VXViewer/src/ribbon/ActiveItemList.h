#pragma once

#include "RibbonButtons.h"

#include <VXViewer/RibbonSchema.h>
#include <VXViewer/Window.h>

#include <memory>
#include <vector>

namespace VX
{

/// The tools that are active, in the order in which they began, each with a button that ends it.
/// @threads the UI thread
class ActiveItemList
{
public:
    /// Looks which of the items are active.
    void update(const RibbonSchema& schema);

    [[nodiscard]] const std::vector<std::shared_ptr<RibbonMenuItem>>& items() const { return items_; }

    /// Ends the tool that began last. @return false while none is active
    bool endLast();

    /// Draws the list at the bottom of `area`, where neither the windows of the tools nor other marks are.
    void draw(const PixelRect& area, const RibbonSchema& schema, RibbonButtons& buttons);

private:
    std::vector<std::shared_ptr<RibbonMenuItem>> items_;
};

} // namespace VX
