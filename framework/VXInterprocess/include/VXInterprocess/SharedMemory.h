#pragma once

#include <VXInterprocess/Export.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace VX
{

/// A named channel that wakes the processes of one user. It carries no data: whoever notifies stores them elsewhere
/// first, in the action that it hands over.
///
/// Any number of processes, and of objects in one process, may open a name. The death of a process at any moment, also
/// by SIGKILL, neither blocks the others nor takes a notification from them. Where the channel cannot be had (a warning
/// in the log says why) the object works on its own: it reaches nobody and nobody reaches it.
class VXINTERPROCESS_API SharedMemory
{
public:
    /// Opens the channel.
    /// @param name   equal names of one user meet; those of two users never do
    /// @param owner  true: the channel is created where it is missing. false: where it is missing, the object works on
    ///               its own
    SharedMemory(const std::string& name, bool owner);

    /// Closes the channel; the last of all objects takes the name away. No call may be under way in this object.
    ~SharedMemory();

    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;

    /// Blocks until `stop`, and calls `callback` once for each notification since this object was constructed, those of
    /// this object included. An exception of the callback ends the wait; its notification is used up.
    /// @param callback  may notify and stop
    /// @threads any one at a time
    void wait(const std::function<void()>& callback);

    /// Runs `action`, no other action of the channel at the same time, then wakes all that wait. Nobody has to. An
    /// exception of the action wakes nobody and reaches the caller.
    /// @param action  must not notify the same channel
    /// @throws std::system_error where the action does so
    /// @threads any
    void notify(const std::function<void()>& action);

    /// Makes the pending `wait` of this object, or a later one, return. Blocks for nobody.
    /// @threads any
    void stop();

    /// How many objects of all processes, this one included, are in `wait`.
    /// @threads any
    [[nodiscard]] std::size_t listenerCount() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace VX
