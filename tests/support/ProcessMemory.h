#pragma once

#include <cstddef>
#include <string_view>

namespace VX::Test
{

/// How often `text` stands in the memory of a running process, as in what it would leave behind were it dumped.
/// @param process  started by this one
[[nodiscard]] std::size_t countInMemory(int process, std::string_view text);

} // namespace VX::Test
