#pragma once

#include <tl/expected.hpp>

#include <string>

namespace VX
{

/// Waits until the program is to end: on SIGTERM, SIGINT or SIGHUP, and, if asked to, when its parent has ended.
class ShutdownWait
{
public:
    /// To be made before any other thread exists: from here on the signals are only for this object. SIGPIPE and
    /// SIGXFSZ are ignored from here on, so that the calls that meet them fail instead.
    /// @param parent  the number of the process that started this one, to end with; 0: none. It comes from there: one
    ///                that has ended already is not to be seen from here any more.
    /// @return `The service cannot be started: REASON.`
    [[nodiscard]] static tl::expected<ShutdownWait, std::string> create(int parent);

    ShutdownWait(ShutdownWait&& other) noexcept;
    ShutdownWait& operator=(ShutdownWait&&) = delete;
    ~ShutdownWait();

    void wait();

private:
    ShutdownWait() = default;

    int signals_ = -1;
    int parent_ = -1; ///< readable once the parent has ended; -1 where that does not matter
};

} // namespace VX
