#include <quorvix/telemetry/LogLines.h>

#include <algorithm>
#include <bit>

namespace VX
{

namespace
{

/// Few lines take little memory, and many are few blocks.
constexpr std::size_t firstCapacity = 16U << 10U;
constexpr std::size_t largestCapacity = 1U << 20U;

std::size_t capacityAfter(std::size_t fullChunks)
{
    constexpr std::size_t doublings = std::bit_width(largestCapacity / firstCapacity) - 1;
    return firstCapacity << std::min(fullChunks, doublings);
}

} // namespace

void LogChunk::add(const LogRecord& record)
{
    const Head head{record.time, record.message.size(), record.level};
    bytes_.append(reinterpret_cast<const char*>(&head), sizeof head);
    bytes_.append(record.message);
    ++count_;
}

void LogLines::add(const LogRecord& record)
{
    if (!last_ || !last_->hasRoomFor(record))
    {
        auto next = std::make_shared<LogChunk>(
            std::max(capacityAfter(full_.size() + (last_ ? 1 : 0)), LogChunk::sizeOf(record)));
        if (last_)
            full_.push_back(std::move(last_));
        last_ = std::move(next);
    }
    last_->add(record);
    ++count_;
}

LogChunks LogLines::take()
{
    if (last_)
        full_.push_back(std::move(last_));
    last_.reset();
    count_ = 0;
    return std::exchange(full_, {});
}

void LogLines::dropBelow(spdlog::level::level_enum level)
{
    LogLines kept;
    for (const auto& chunk : take())
        chunk->forEach(
            [&kept, level](const LogRecord& record)
            {
                if (record.level >= level)
                    kept.add(record);
            });
    *this = std::move(kept);
}

} // namespace VX
