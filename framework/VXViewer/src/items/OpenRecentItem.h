#pragma once

#include "PanelItem.h"

#include <filesystem>
#include <string>
#include <vector>

namespace VX
{

/// The list of the files that were opened or saved lately, to open one again.
/// @threads the UI thread
class OpenRecentItem : public PanelItem
{
public:
    explicit OpenRecentItem(Viewer& viewer);

protected:
    void opened_() override;
    void drawContent_() override;

private:
    std::vector<std::filesystem::path> paths_;
};

} // namespace VX
