#pragma once

#include <VXViewer/Export.h>

#include <boost/signals2/connection.hpp>
#include <tl/expected.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace VX
{

class ResourceNews;
class Viewer;

/// The server through which agents drive the viewer of this process: the default one of VXMcp, with the viewer's tools.
/// The user switches it off and on.
/// @threads the UI thread
class VXVIEWER_API AgentServer
{
public:
    static AgentServer& instance();

    AgentServer(const AgentServer&) = delete;
    AgentServer& operator=(const AgentServer&) = delete;

    /// Gives it the viewer's tools and serves: on the port that "-mcpPort" among the viewer's arguments names, else on
    /// the usual one or the next that is free. "mcpToken" of the configuration is what clients must know.
    /// @return an error sentence where the port named is taken or cannot be used, or there is none
    [[nodiscard]] tl::expected<void, std::string> begin(Viewer& viewer);

    /// Whether "-mcpPort" is among the viewer's arguments.
    [[nodiscard]] static bool isPortNamed(const Viewer& viewer);

    /// Serves no more, for good: the loop turns no more, and calls that wait for it are told that the viewer closes.
    /// @return false where it had not begun
    bool end();

    /// True from `begin` to `end`: there is something to switch on and off.
    [[nodiscard]] bool isOffered() const { return offered_; }

    [[nodiscard]] bool isOn() const;

    /// Serves or stops serving.
    /// @return an error sentence where it cannot serve
    tl::expected<void, std::string> setOn(bool on);

private:
    AgentServer();
    ~AgentServer();

    [[nodiscard]] tl::expected<void, std::string> start_();

    bool offered_ = false;
    boost::signals2::scoped_connection statusConnection_;
    std::unique_ptr<ResourceNews> news_;
    std::uint16_t port_ = 0; ///< that the user named; 0: none
};

} // namespace VX
