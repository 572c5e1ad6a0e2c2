#pragma once

#include "Channel.h"
#include "SegmentFile.h"

#include <VXInterprocess/Export.h>

#include <boost/interprocess/mapped_region.hpp>
#include <boost/interprocess/shared_memory_object.hpp>

#include <memory>
#include <string>

namespace VX
{

/// A channel in shared memory, under a name of this user. Readable and writable by this user alone.
class VXINTERPROCESS_API Segment
{
public:
    /// Opens the channel. One that was left behind by processes that died is begun anew.
    /// @param create  whether one that is missing is created
    /// @return null where it is missing and stays so
    /// @throws std::exception where the system does not allow it
    [[nodiscard]] static std::unique_ptr<Segment> open(const std::string& channelName, bool create);

    /// Closes the channel; the last one to do so takes the name away.
    ~Segment();

    Segment(const Segment&) = delete;
    Segment& operator=(const Segment&) = delete;

    [[nodiscard]] Channel& channel() { return *static_cast<Channel*>(region_.get_address()); }

    [[nodiscard]] SegmentFile& file() { return file_; }

private:
    Segment(std::string name, boost::interprocess::shared_memory_object object);

    /// False where the name was taken away meanwhile.
    bool join_();
    void leave_();

    const std::string name_;
    boost::interprocess::shared_memory_object object_;
    SegmentFile file_;
    boost::interprocess::mapped_region region_;
};

} // namespace VX
