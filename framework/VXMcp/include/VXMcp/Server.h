#pragma once

#include <VXMcp/Prompt.h>
#include <VXMcp/Resource.h>
#include <VXMcp/Tool.h>

#include <boost/signals2/connection.hpp>
#include <tl/expected.hpp>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace VX::Mcp
{

/// A server of the Model Context Protocol over streamable HTTP, at http://127.0.0.1:PORT/mcp. It speaks the revisions
/// 2026-07-28, 2025-11-25 and 2025-06-18 with any number of clients, all of them programs of this user.
/// @threads any, for all operations; `start` and `stop` one at a time, and not within a tool or a callback of the
/// server's
class VXMCP_API Server
{
public:
    struct Settings
    {
        std::uint16_t port = 7431;
        bool portFixed = false;    ///< a port that is taken is an error; otherwise the next free one is used
        std::string bearerToken{}; ///< what clients must send in "Authorization: Bearer …"; empty: nothing
    };

    struct Status
    {
        struct Call
        {
            std::string tool;
            std::string client; ///< the name that it gave itself; empty where it has none
            std::chrono::system_clock::time_point time;
            bool failed = false;
        };

        bool running = false;
        std::string address{};         ///< "http://127.0.0.1:7431/mcp"; empty while it does not run
        unsigned clients = 0;          ///< connections that are open now
        std::vector<Call> lastCalls{}; ///< the newest first, at most 20
    };

    using ToolValidator = std::function<tl::expected<void, std::string>(const std::string& toolName)>;

    Server();
    ~Server();

    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// Replaces a tool of the same name, also while the server runs.
    void addTool(Tool tool);
    void removeTool(const std::string& name);

    /// Replaces a resource of the same URI.
    void addResource(Resource resource);

    /// Replaces a template of the same pattern. Resources go before templates.
    void addResourceTemplate(ResourceTemplate resourceTemplate);

    /// Tells those clients that want to know that the content of a resource has changed.
    void resourceChanged(const std::string& uri);

    /// Replaces a prompt of the same name.
    void addPrompt(Prompt prompt);

    /// Takes calls of `alias` for calls of `toolName`. Aliases are listed nowhere.
    void addAlias(std::string alias, std::string toolName);

    /// Forgets all tools, aliases, resources, templates and prompts. Calls in progress keep what they use.
    void clear();

    /// Asks `validator` before each call, with the tool's name and before the tool is looked up. Its error is what the
    /// client gets in place of a result. It is called on server threads, several at a time; empty: all are allowed.
    void setToolValidator(ToolValidator validator);

    /// How the server presents itself to clients.
    /// @param instructions  what an agent should know before its first call; may be empty
    void setInfo(std::string name, std::string version, std::string instructions);

    /// Begins to serve; a server that runs is stopped first.
    /// @return an error sentence where no port is to be had
    [[nodiscard]] tl::expected<void, std::string> start(const Settings& settings);

    /// Cancels the calls in progress, gives them half a second to answer and closes all connections. Does nothing where
    /// the server does not run.
    void stop();

    [[nodiscard]] bool isRunning() const;

    /// The port it serves; 0 while it does not run.
    [[nodiscard]] std::uint16_t port() const;

    [[nodiscard]] Status status() const;

    /// Calls `callback` after each change of the status, on whichever thread makes it.
    boost::signals2::connection onStatusChanged(const std::function<void()>& callback);

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace VX::Mcp
