#pragma once

namespace VX
{

class RibbonMenu;

/// Tells the user of a Mac with an Apple processor who runs the program for Intel processors where the right one is;
/// nothing elsewhere.
/// @threads the UI thread
void showPlatformNotice(RibbonMenu& menu);

} // namespace VX
