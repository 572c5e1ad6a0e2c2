#pragma once

#include <cstdint>

namespace VX
{

/// A set of viewports, one bit each, 32 at most.
class ViewportMask
{
public:
    /// The empty set.
    constexpr ViewportMask() = default;

    constexpr explicit ViewportMask(std::uint32_t bits)
        : bits_(bits)
    {
    }

    [[nodiscard]] static constexpr ViewportMask all() { return ViewportMask(~std::uint32_t{0}); }

    [[nodiscard]] constexpr bool isEmpty() const { return bits_ == 0; }

    [[nodiscard]] constexpr bool contains(ViewportMask other) const { return (bits_ & other.bits_) == other.bits_; }

    [[nodiscard]] constexpr std::uint32_t bits() const { return bits_; }

    friend constexpr ViewportMask operator|(ViewportMask a, ViewportMask b) { return ViewportMask(a.bits_ | b.bits_); }

    friend constexpr ViewportMask operator&(ViewportMask a, ViewportMask b) { return ViewportMask(a.bits_ & b.bits_); }

    friend constexpr bool operator==(ViewportMask, ViewportMask) = default;

private:
    std::uint32_t bits_ = 0;
};

} // namespace VX
