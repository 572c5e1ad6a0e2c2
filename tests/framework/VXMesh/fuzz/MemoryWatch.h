#pragma once

#include <cstddef>

namespace VX::Test
{

/// Sees what `operator new` gives out, on all threads, while it lives. One at a time.
class MemoryWatch
{
public:
    MemoryWatch();

    /// The most bytes that were in use at once beyond those in use at the beginning.
    [[nodiscard]] std::size_t peak() const;

private:
    std::ptrdiff_t before_;
};

} // namespace VX::Test
