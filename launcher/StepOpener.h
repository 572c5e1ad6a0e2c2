#pragma once

namespace VX
{

class LocalServices;
class Viewer;

/// Lets `viewer` open .step and .stp files through the conversion service, conversions of files with the same stem one
/// after another.
/// @param services  started with the first conversion; null where the service runs elsewhere. They outlive the openers
/// @threads UI thread
void installStepOpener(Viewer& viewer, LocalServices* services);

} // namespace VX
