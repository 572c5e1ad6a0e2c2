#include "Segment.h"

#include <boost/interprocess/exceptions.hpp>
#include <spdlog/spdlog.h>

#include <exception>
#include <mutex>
#include <new>
#include <stdexcept>
#include <utility>

namespace VX
{

namespace
{

namespace bi = boost::interprocess;

bi::shared_memory_object openObject(const std::string& name, bool create)
{
    return create ? bi::shared_memory_object(bi::open_or_create, name.c_str(), bi::read_write, bi::permissions(0600))
                  : bi::shared_memory_object(bi::open_only, name.c_str(), bi::read_write);
}

} // namespace

std::unique_ptr<Segment> Segment::open(const std::string& channelName, bool create)
try
{
    const std::string name = segmentName(channelName);
    while (true)
    {
        std::unique_ptr<Segment> segment(new Segment(name, openObject(name, create)));
        if (segment->join_())
            return segment;
    }
}
catch (const bi::interprocess_exception& error)
{
    if (error.get_error_code() == bi::not_found_error && !create)
        return nullptr;
    throw;
}

Segment::Segment(std::string name, bi::shared_memory_object object)
    : name_(std::move(name))
    , object_(std::move(object))
    , file_(object_.get_mapping_handle().handle)
{
}

bool Segment::join_()
{
    if (!file_.isPrivate())
        throw std::runtime_error("it is not this user's alone");
    const std::lock_guard lock(file_);
    if (file_.isRemoved())
        return false;
    // Without another user it is new, or its users have died, at any point of what they did.
    const bool begin = !file_.hasOthers();
    if (begin)
        object_.truncate(sizeof(Channel));
    bi::mapped_region region(object_, bi::read_write, 0, sizeof(Channel));
    if (begin)
        new (region.get_address()) Channel;
    file_.join();
    region_.swap(region);
    return true;
}

void Segment::leave_()
{
    const std::lock_guard lock(file_);
    file_.leave();
    if (!file_.hasOthers() && !file_.isRemoved())
        bi::shared_memory_object::remove(name_.c_str());
}

Segment::~Segment()
{
    if (!region_.get_address())
        return;
    try
    {
        leave_();
    }
    catch (const std::exception& error)
    {
        spdlog::warn("A channel between processes cannot be closed.");
        spdlog::debug("The channel cannot be closed: {}", error.what());
    }
}

} // namespace VX
