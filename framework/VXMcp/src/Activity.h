#pragma once

#include <VXMcp/Server.h>

#include <boost/signals2/signal.hpp>

#include <deque>
#include <string>

namespace VX::Mcp
{

/// What the server is doing, for those who show it.
/// @threads any
class Activity
{
public:
    /// @param address  empty: the server has stopped
    void setAddress(std::string address);

    void addCall(const std::string& tool, const std::string& client, bool failed);

    /// All of the status but the number of clients.
    [[nodiscard]] Server::Status status() const;

    boost::signals2::signal<void()> changed;

private:
    mutable Mutex mutex_;
    std::string address_ VX_GUARDED_BY(mutex_);
    std::deque<Server::Status::Call> calls_ VX_GUARDED_BY(mutex_);
};

} // namespace VX::Mcp
