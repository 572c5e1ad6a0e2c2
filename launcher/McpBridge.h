#pragma once

#include <VXMesh/ThreadAnnotations.h>

#include <json/value.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace VX
{

/// Passes messages of the Model Context Protocol on from a client that writes and reads lines to the server of a
/// running program, and back. Requests are under way side by side. A session that the server does not know, since
/// another program serves by now, is begun again as the client has begun it.
class McpBridge
{
public:
    /// Where the server is now; nothing: there is none. Called on any thread.
    using FindPort = std::function<std::optional<std::uint16_t>()>;

    /// Takes a message for the client, one line without its end. Called on any thread, once at a time.
    using Write = std::function<void(const std::string& line)>;

    /// @param token  what the server wants to know; may be empty
    McpBridge(FindPort findPort, Write write, std::string token);

    /// Gives up what is under way.
    ~McpBridge();

    McpBridge(const McpBridge&) = delete;
    McpBridge& operator=(const McpBridge&) = delete;

    /// Passes on a message of the client. Returns at once for a request; waits until anything else is delivered, but no
    /// longer than five seconds.
    void handle(const std::string& line);

    /// Waits until all requests are answered, but no longer than that.
    void finish(std::chrono::milliseconds limit);

private:
    struct Message;
    struct Request;

    void start_(std::shared_ptr<Request> request);
    [[nodiscard]] bool cancel_(const Message& message);
    void deliver_(Request& request);
    void send_(Request& request);
    [[nodiscard]] static bool isSessionLost_(const Request& request);
    [[nodiscard]] bool beginAgain_(const std::string& lost);
    void learn_(const Request& request);
    void reap_(bool all);
    void write_(const std::string& line);
    void writeError_(const Json::Value& id, const std::string& text, int code);

    const FindPort findPort_;
    const Write writeLine_;
    const std::string token_;
    Mutex mutex_;
    std::string session_ VX_GUARDED_BY(mutex_);    ///< of the older revisions
    std::string revision_ VX_GUARDED_BY(mutex_);   ///< that the server has agreed to, of the older ones
    Json::Value initialize_ VX_GUARDED_BY(mutex_); ///< with which the client has begun the session
    std::vector<std::shared_ptr<Request>> running_ VX_GUARDED_BY(mutex_);
    Mutex beginning_; ///< held while a session is begun again
    Mutex writing_;
};

} // namespace VX
