#pragma once

#include <string>

namespace VX::Test
{

/// A sharedMemoryPeer that the test lets run in single steps, by one thread, and kills at the end of the scope. The
/// role has to stop itself before the first step and after the last.
class SteppedPeer
{
public:
    enum class Step
    {
        Instruction,
        SystemCall, ///< to the beginning or the end of the next one
    };

    /// Returns where the role has stopped for the first step.
    SteppedPeer(const std::string& role, const std::string& channel);
    ~SteppedPeer();

    SteppedPeer(const SteppedPeer&) = delete;
    SteppedPeer& operator=(const SteppedPeer&) = delete;

    /// Whether the system allows it.
    [[nodiscard]] bool isTraced() const { return traced_; }

    /// Goes on by so many steps. @return false where the last one was reached before
    bool advance(Step step, int count);

private:
    /// Whether it has stopped, and not by its own doing.
    [[nodiscard]] bool waitForStop_() const;

    const int id_;
    const bool traced_;
};

} // namespace VX::Test
