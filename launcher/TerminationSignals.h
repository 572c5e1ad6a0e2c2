#pragma once

#include <functional>
#include <memory>

namespace VX
{

/// While it lives, the first Ctrl+C or polite request to end (SIGINT, SIGTERM, SIGHUP) calls a function instead of
/// ending the process at once; the second one ends it. From then on nothing ends for want of a reader of what the
/// program prints (SIGPIPE).
class TerminationSignals
{
public:
    /// @param requestEnd  called once, on a thread of its own
    explicit TerminationSignals(std::function<void()> requestEnd);
    ~TerminationSignals();

    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace VX
