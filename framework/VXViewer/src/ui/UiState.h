#pragma once

#include "UiFonts.h"

namespace VX
{

/// What the widgets draw with, set by the session of the interface.
struct UiState
{
    static UiState& instance();

    float scale = 1;
    const UiFonts* fonts = nullptr;
};

} // namespace VX
