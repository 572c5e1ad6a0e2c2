#pragma once

namespace VX
{

class Window;

/// Adds the graphics and the monitors of `window`, whose context is current, to the answers of GetSystemInfoJson.
/// @threads the UI thread
void contributeWindowFacts(const Window& window);

/// Ends that.
void withdrawWindowFacts();

} // namespace VX
