#pragma once

#include <VXViewer/Export.h>

namespace VX
{

/// Switches Mesa's cache of shaders off (MESA_SHADER_CACHE_DISABLE) where its disk has no room: Mesa writes to it
/// through mapped memory, and the system ends a process that does so on a full disk. To be called before the first
/// window, while no other thread reads the environment.
VXVIEWER_API void avoidGraphicsCacheOnFullDisk();

} // namespace VX
