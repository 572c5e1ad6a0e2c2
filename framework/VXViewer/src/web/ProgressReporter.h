#pragma once

#include <VXMesh/Progress.h>

#include <chrono>
#include <cstdint>

namespace VX
{

/// Calls a progress callback as often as is useful: for each per mille that is done, and ten times a second.
/// @threads one at a time
class ProgressReporter
{
public:
    ProgressReporter() = default;
    explicit ProgressReporter(ProgressCallback callback);

    [[nodiscard]] bool isWanted() const { return static_cast<bool>(callback_); }

    /// @param total  0 where it is not known
    /// @return false when the operation is to stop, also where the callback threw
    [[nodiscard]] bool report(std::uint64_t done, std::uint64_t total);

private:
    ProgressCallback callback_;
    float last_ = -1.F;
    std::chrono::steady_clock::time_point lastTime_;
};

} // namespace VX
