#pragma once

#include <functional>

namespace VX::Test
{

/// Asks every few milliseconds. @return false where `condition` is not true within half a minute
[[nodiscard]] bool waitUntil(const std::function<bool()>& condition);

} // namespace VX::Test
