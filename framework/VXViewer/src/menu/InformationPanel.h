#pragma once

#include "SceneFacts.h"

#include <cstdint>
#include <string>

namespace VX
{

class Viewer;

/// The facts of what is selected, or of the whole scene.
/// @threads the UI thread
class InformationPanel
{
public:
    explicit InformationPanel(Viewer& viewer);

    /// Draws into the current window.
    void draw();

private:
    void update_();

    Viewer& viewer_;
    std::uint64_t revision_ = 0;
    SceneFacts facts_;
    std::string title_;
    std::string type_; ///< of a single object
};

} // namespace VX
