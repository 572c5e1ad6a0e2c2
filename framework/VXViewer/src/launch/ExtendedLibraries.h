#pragma once

#include <vector>

namespace VX
{

/// The shared libraries that extend the program.
/// @threads the UI thread
class ExtendedLibraries
{
public:
    static ExtendedLibraries& instance();

    /// Loads those in the folder `extensions` beside the executable, in the order of their names. One that cannot be
    /// loaded, or has no entry function, is left out with a warning.
    void load();

    /// Unloads them in reverse order.
    void unload();

private:
    std::vector<void*> handles_;
};

} // namespace VX
