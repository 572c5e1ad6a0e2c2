#include <VXMesh/Logger.h>
#include <VXMesh/Timer.h>

#include <spdlog/logger.h>

#include <utility>

namespace VX
{

Timer::Timer(std::string name)
    : name_(std::move(name))
    , start_(std::chrono::steady_clock::now())
{
}

Timer::~Timer()
{
    finish();
}

std::chrono::nanoseconds Timer::elapsed() const
{
    return std::chrono::steady_clock::now() - start_;
}

void Timer::finish()
{
    if (std::exchange(finished_, true))
        return;
    const std::chrono::duration<double, std::milli> milliseconds = elapsed();
    Logger::instance().getSpdLogger()->debug("Timer \"{}\": {:.3f} ms", name_, milliseconds.count());
}

} // namespace VX
