#pragma once

#include <utility>

namespace VX::UI
{

/// While one lives, a field shows asterisks for a password that the user has made visible, too: what is drawn becomes
/// a picture for others.
/// @threads the UI thread
class ScopedMaskedPasswords
{
public:
    ScopedMaskedPasswords() = default;

    ~ScopedMaskedPasswords() { active_ = wasActive_; }

    ScopedMaskedPasswords(const ScopedMaskedPasswords&) = delete;
    ScopedMaskedPasswords& operator=(const ScopedMaskedPasswords&) = delete;

    [[nodiscard]] static bool isActive() { return active_; }

private:
    inline static bool active_ = false;

    const bool wasActive_ = std::exchange(active_, true);
};

} // namespace VX::UI
