#pragma once

#include "SceneFacts.h"

#include <cstdint>

namespace VX
{

class Viewer;

/// The line at the bottom: how much the scene holds.
/// @threads the UI thread
class StatusLine
{
public:
    explicit StatusLine(Viewer& viewer)
        : viewer_(viewer)
    {
    }

    /// Draws into the current window.
    void draw();

private:
    Viewer& viewer_;
    std::uint64_t revision_ = 0;
    SceneFacts facts_;
};

} // namespace VX
