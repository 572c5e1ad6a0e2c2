#pragma once

#include <cstddef>
#include <string>

namespace VX
{

/// The name of this user's segment for a channel: no other user has the same.
[[nodiscard]] std::string segmentName(const std::string& channel);

/// The file behind an open segment, and locks of parts of it that say who uses the segment: the system gives them back
/// when a process dies, however it dies. Every object has an open file of its own, also within one process.
/// @throws std::system_error in all functions
class SegmentFile
{
public:
    /// @param descriptor  stays the caller's and stays open meanwhile
    explicit SegmentFile(int descriptor);

    SegmentFile(const SegmentFile&) = delete;
    SegmentFile& operator=(const SegmentFile&) = delete;

    /// Whether it belongs to this user, and nobody else can open it.
    [[nodiscard]] bool isPrivate() const;

    /// Whether the name no longer leads to it.
    [[nodiscard]] bool isRemoved() const;

    /// The right to join and to leave, for one at a time; waits for it.
    void lock();
    void unlock();

    /// Makes this object one of the users. Under the lock, as all that asks for users.
    void join();
    void leave();

    /// Whether there are users besides this object.
    [[nodiscard]] bool hasOthers() const;

    /// Makes this object a listener.
    /// @return what `stopListening` wants
    /// @threads any one at a time
    [[nodiscard]] long startListening();
    void stopListening(long slot);

    /// How many listeners there are besides this object.
    /// @threads any
    [[nodiscard]] std::size_t otherListeners() const;

private:
    int descriptor_;
};

} // namespace VX
