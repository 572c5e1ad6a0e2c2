#pragma once

#include "RibbonLayout.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace VX
{

class Object;

/// Which tabs there are at present, and which of them is open.
/// @threads the UI thread
class RibbonTabs
{
public:
    /// Looks at what is selected in `scene`: tabs for a kind of object come and go with it.
    /// @param layout  lives until the next call
    void update(const RibbonLayout& layout, Object& scene);

    [[nodiscard]] const std::vector<const RibbonLayoutTab*>& shown() const { return shown_; }

    /// Null while no tab is shown.
    [[nodiscard]] const RibbonLayoutTab* open() const;

    /// Opens the tab `name`; one that is not shown is ignored.
    void open(std::string_view name);

private:
    void findSelectedTypes_(Object& scene);

    std::vector<const RibbonLayoutTab*> shown_;
    std::vector<std::string> selectedTypes_;
    std::uint64_t sceneRevision_ = 0;
    std::string open_;
    /// The tab to go back to when the one of the selected objects goes.
    std::string openBefore_;
};

} // namespace VX
