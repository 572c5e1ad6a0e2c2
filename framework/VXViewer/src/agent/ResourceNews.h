#pragma once

#include <boost/signals2/connection.hpp>

#include <memory>

namespace VX
{

class Viewer;

namespace Mcp
{
class Server;
}

/// Tells the clients of the server that what they read of the scene has changed, a few times a second at most.
/// @threads the UI thread
class ResourceNews
{
public:
    /// @param viewer, server  live longer
    ResourceNews(Viewer& viewer, Mcp::Server& server);

    ResourceNews(const ResourceNews&) = delete;
    ResourceNews& operator=(const ResourceNews&) = delete;

private:
    void note_();
    void tell_();

    Viewer& viewer_;
    Mcp::Server& server_;
    std::shared_ptr<void> timer_; ///< null: there is nothing to tell
    boost::signals2::scoped_connection connection_;
};

} // namespace VX
