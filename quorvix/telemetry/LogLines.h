#pragma once

#include <quorvix/Export.h>

#include <spdlog/common.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <ratio>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace VX
{

/// A line of the log on its way to the service.
struct LogRecord
{
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
    using Time = std::chrono::time_point<std::chrono::system_clock, Ticks>;

    Time time; ///< when the sink got it
    spdlog::level::level_enum level;
    std::string_view message;
};

/// Lines in one block of memory, in their order. Hours of them may wait for a service, and a string for each would
/// take twice the memory and an allocation while the lock of the sink is held.
/// @threads one at a time; any number once nothing is added any more
class LogChunk
{
public:
    /// @param capacity  bytes that it has room for
    explicit LogChunk(std::size_t capacity) { bytes_.reserve(capacity); }

    /// The bytes that a line takes.
    [[nodiscard]] static std::size_t sizeOf(const LogRecord& record) { return sizeof(Head) + record.message.size(); }

    [[nodiscard]] bool hasRoomFor(const LogRecord& record) const
    {
        return sizeOf(record) <= bytes_.capacity() - bytes_.size();
    }

    void add(const LogRecord& record);

    /// How many lines there are.
    [[nodiscard]] std::size_t count() const { return count_; }

    /// Of all messages together, in bytes.
    [[nodiscard]] std::size_t messageBytes() const { return bytes_.size() - count_ * sizeof(Head); }

    /// Calls `visit` with each line.
    template <typename Visit>
    void forEach(Visit&& visit) const
    {
        for (const char* at = bytes_.data(); at != bytes_.data() + bytes_.size();)
        {
            Head head;
            std::memcpy(&head, at, sizeof head);
            at += sizeof head;
            visit(LogRecord{head.time, head.level, {at, head.size}});
            at += head.size;
        }
    }

private:
    struct Head
    {
        LogRecord::Time time{};
        std::size_t size = 0; ///< of the message, which is behind it
        spdlog::level::level_enum level{};
    };

    std::string bytes_;
    std::size_t count_ = 0;
};

using LogChunks = std::vector<std::shared_ptr<const LogChunk>>;

/// The lines that have come since they were taken last.
/// @threads one at a time
class QUORVIX_API LogLines
{
public:
    void add(const LogRecord& record);

    [[nodiscard]] std::size_t count() const { return count_; }

    /// Hands over all lines, without copying them, and has none then.
    [[nodiscard]] LogChunks take();

    /// Removes the lines below `level`.
    void dropBelow(spdlog::level::level_enum level);

private:
    LogChunks full_;
    std::shared_ptr<LogChunk> last_; ///< behind the full ones; null where there are no lines
    std::size_t count_ = 0;
};

} // namespace VX
