#pragma once

namespace VX
{

/// Lets writing to a connection that the other side has closed fail, where it would end the process.
/// @threads concerns the calling thread only
void ignoreBrokenPipes();

} // namespace VX
