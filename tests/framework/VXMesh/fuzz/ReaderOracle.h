#pragma once

#include "formats/GeometryCodec.h"
#include "formats/Source.h"

#include <cstddef>
#include <span>
#include <string_view>

namespace VX::Test
{

/// Reads `bytes` as a file called `name` and ends the process, with a line that says why, unless
/// - what loads has finite coordinates, indices that name points, and as many attributes as what they belong to;
/// - what fails, and each warning, is a sentence that names the file;
/// - the memory in use meanwhile stays in proportion to the number of bytes.
void checkReader(const SourceReader& reader, std::string_view name, std::span<const std::byte> bytes);

/// The same for a geometry by itself; null is good.
void checkGeometry(const AnyGeometry& geometry);

} // namespace VX::Test
