#pragma once

#include <functional>

namespace VX
{

class Viewer;

/// Lets `viewer` open .step and .stp files through the conversion service, conversions of files with the same stem one
/// after another.
/// @param startServices  called before each conversion on its worker thread; may be empty
/// @threads UI thread
void installStepOpener(Viewer& viewer, std::function<void()> startServices);

} // namespace VX
