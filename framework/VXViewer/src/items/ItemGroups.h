#pragma once

#include <memory>
#include <string>
#include <vector>

namespace VX
{

class RibbonMenuItem;
class SceneSummary;
class Viewer;

using RibbonItems = std::vector<std::shared_ptr<RibbonMenuItem>>;

// The viewer's items by what they are about. `viewer` outlives them.

[[nodiscard]] RibbonItems makeFileItems(Viewer& viewer, const std::shared_ptr<SceneSummary>& scene);
[[nodiscard]] RibbonItems makeHistoryItems(Viewer& viewer);
[[nodiscard]] RibbonItems makeObjectItems(Viewer& viewer, const std::shared_ptr<SceneSummary>& scene);
[[nodiscard]] RibbonItems makeSelectionItems(Viewer& viewer, const std::shared_ptr<SceneSummary>& scene);
[[nodiscard]] RibbonItems makeVisibilityItems(Viewer& viewer, const std::shared_ptr<SceneSummary>& scene);
[[nodiscard]] RibbonItems makeCameraItems(Viewer& viewer, const std::shared_ptr<SceneSummary>& scene);
[[nodiscard]] RibbonItems makeDisplayItems(Viewer& viewer, const std::shared_ptr<SceneSummary>& scene);
[[nodiscard]] RibbonItems makeToolItems(Viewer& viewer, const std::shared_ptr<SceneSummary>& scene);
[[nodiscard]] RibbonItems makeWindowItems(Viewer& viewer);

} // namespace VX
