#include "Segment.h"

#include <VXInterprocess/SharedMemory.h>

#include <spdlog/spdlog.h>

#include <atomic>
#include <exception>

namespace VX
{

namespace
{

std::unique_ptr<Segment> openSegment(const std::string& name, bool create)
{
    try
    {
        return Segment::open(name, create);
    }
    catch (const std::exception& error)
    {
        spdlog::warn("The channel to the other instances of the program cannot be opened.");
        spdlog::debug("The channel cannot be opened: {}", error.what());
        return nullptr;
    }
}

} // namespace

struct SharedMemory::State
{
    State(const std::string& name, bool owner)
        : segment(openSegment(name, owner))
    {
    }

    const std::unique_ptr<Segment> segment; ///< null: the object is on its own
    Channel ownChannel;
    Channel& channel = segment ? segment->channel() : ownChannel;
    std::uint64_t seenStep = channel.look().step;
    std::atomic<bool> listening{false};
    std::atomic<bool> stopped{false};
};

namespace
{

// Shows an object as a listener for as long as it waits.
class Listening
{
public:
    Listening(Segment* segment, std::atomic<bool>& flag)
        : segment_(segment)
        , slot_(segment ? segment->file().startListening() : 0)
        , flag_(flag)
    {
        flag_ = true;
    }

    ~Listening()
    {
        flag_ = false;
        if (segment_)
            segment_->file().stopListening(slot_);
    }

    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;

private:
    Segment* segment_;
    long slot_;
    std::atomic<bool>& flag_;
};

} // namespace

SharedMemory::SharedMemory(const std::string& name, bool owner)
    : state_(std::make_unique<State>(name, owner))
{
}

SharedMemory::~SharedMemory() = default;

void SharedMemory::wait(const std::function<void()>& callback)
{
    const Listening listening(state_->segment.get(), state_->listening);
    while (true)
    {
        // Looked at before the question whether to stop: `stop` changes what the sleep compares with.
        const Channel::Look look = state_->channel.look();
        if (state_->stopped)
            return;
        if (state_->seenStep == look.step)
        {
            state_->channel.sleep(look);
            continue;
        }
        while (state_->seenStep != look.step && !state_->stopped)
        {
            ++state_->seenStep;
            callback();
        }
    }
}

void SharedMemory::notify(const std::function<void()>& action)
{
    state_->channel.notify(action);
}

void SharedMemory::stop()
{
    state_->stopped = true;
    state_->channel.rouse();
}

std::size_t SharedMemory::listenerCount() const
{
    const std::size_t others = state_->segment ? state_->segment->file().otherListeners() : 0;
    return others + (state_->listening ? 1 : 0);
}

} // namespace VX
