#pragma once

namespace VX
{

/// A flag that is set once, from any thread, and wakes whoever waits for it together with a process.
/// @threads any
class StopEvent
{
public:
    /// Ends the program where the system has no event left to give.
    StopEvent();
    ~StopEvent();

    StopEvent(const StopEvent&) = delete;
    StopEvent& operator=(const StopEvent&) = delete;

    void set();

    [[nodiscard]] bool isSet() const;

    /// Becomes readable when the event is set.
    [[nodiscard]] int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

} // namespace VX
