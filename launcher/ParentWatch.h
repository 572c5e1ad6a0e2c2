#pragma once

#include <functional>
#include <memory>

namespace VX
{

/// While it lives, calls a function once the process that started this one has ended, in whatever way.
class ParentWatch
{
public:
    /// @param parent  the number of that process
    /// @param ended   called at most once, on a thread of its own; also where that process has ended before
    ParentWatch(int parent, std::function<void()> ended);
    ~ParentWatch();

    ParentWatch(const ParentWatch&) = delete;
    ParentWatch& operator=(const ParentWatch&) = delete;

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace VX
