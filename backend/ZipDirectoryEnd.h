#pragma once

#include <filesystem>

namespace VX
{

/// Whether the zip archive `file` declares exactly one entry, wherever a reader may look for its directory.
///
/// A library that opens an archive reads its whole directory first, and does so for every place in the last 64 KiB that
/// looks like a directory's end: 1 GiB of directory takes it 5 GiB of memory, and 3000 ends of one directory minutes.
/// This asks the ends alone, before that. What is no archive at all may pass: the library says what is wrong with it.
/// @threads any
[[nodiscard]] bool declaresOneEntry(const std::filesystem::path& file);

} // namespace VX
