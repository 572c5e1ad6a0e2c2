#include "ProgressReporter.h"

#include <spdlog/spdlog.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace VX
{

namespace
{

constexpr float smallestStep = 0.001F;
constexpr std::chrono::milliseconds longestPause{100};

} // namespace

ProgressReporter::ProgressReporter(ProgressCallback callback)
    : callback_(std::move(callback))
{
}

bool ProgressReporter::report(std::uint64_t done, std::uint64_t total)
{
    if (!callback_)
        return true;
    const float fraction =
        total == 0 ? 0.F : std::min(static_cast<float>(static_cast<double>(done) / static_cast<double>(total)), 1.F);
    const auto now = std::chrono::steady_clock::now();
    const bool isLast = fraction == 1.F && last_ < 1.F;
    if (!isLast && fraction < last_ + smallestStep && now - lastTime_ < longestPause)
        return true;
    last_ = fraction;
    lastTime_ = now;
    try
    {
        return callback_(fraction);
    }
    catch (const std::exception&)
    {
        spdlog::error("The progress callback of a web request failed");
        return false;
    }
}

} // namespace VX
