#pragma once

#include <VXMesh/Export.h>

#include <json/value.h>

#include <functional>
#include <string>

namespace VX
{

/// The operating system and the processor's architecture as one word: "debian_x86_64"; "apple_x86_64" on a Mac with an
/// Intel processor.
/// @threads any
[[nodiscard]] VXMESH_API std::string getOSNoSpaces();

/// The operating system in the words of its maker: "Debian GNU/Linux 12 (bookworm)".
/// @threads any
[[nodiscard]] VXMESH_API std::string GetDetailedOSName();

/// The processor's name; begins with "Apple" on Apple silicon.
/// @threads any
[[nodiscard]] VXMESH_API std::string GetCpuId();

/// What the program runs on: {"OS Version": text, "CPU Info": {"CPU": text, "Concurrent threads": unsigned},
/// "Memory Info": {"Physical memory total MB": text}}, and what the contributor adds. Needs no window.
/// @threads any
[[nodiscard]] VXMESH_API Json::Value GetSystemInfoJson();

/// Lets `contributor` add members to every answer of `GetSystemInfoJson` ("Graphics Info", "Window Info"); it runs on
/// the caller's thread. It takes the place of the one before; an empty function ends it.
/// A call that began before on another thread may still be running when this returns.
/// @threads any
VXMESH_API void setSystemInfoContributor(std::function<void(Json::Value&)> contributor);

} // namespace VX
