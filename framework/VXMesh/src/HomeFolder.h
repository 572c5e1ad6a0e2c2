#pragma once

#include <VXMesh/Export.h>

#include <filesystem>
#include <initializer_list>

namespace VX
{

/// Says where a home folder could be; empty where it does not know.
using HomeCandidate = std::filesystem::path (*)();

/// The first answer of `candidates` that is an absolute path of a folder. Where none is, a private temporary folder of
/// the process, made at the first such call, with a warning, and removed at the end.
/// @threads any
[[nodiscard]] VXMESH_API std::filesystem::path homeFolder(std::initializer_list<HomeCandidate> candidates);

} // namespace VX
