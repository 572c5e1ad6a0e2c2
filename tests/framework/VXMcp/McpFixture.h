#pragma once

#include "tests/support/RawSocket.h"

#include <VXMcp/Server.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

namespace VX::Test
{

/// A server on a free port, and the bytes that clients of either era exchange with it.
class McpFixture : public ::testing::Test
{
public:
    using Headers = std::map<std::string, std::string>;

    struct Answer
    {
        int status = 0;
        std::string head{};
        std::string body{};
        Json::Value json{}; ///< the body, where it is JSON

        /// The code of the JSON-RPC error in it; 0 for none.
        [[nodiscard]] int error() const;

        /// The text of the first content of a tool's result.
        [[nodiscard]] std::string text() const;
    };

    void SetUp() override;

    /// An answer whose body is not a stream.
    Answer send(const std::string& method, const Headers& headers, const std::string& body = {});

    /// A request of the newest revision with all that it must carry.
    /// @param headers  in place of or besides those that it must have; an empty value leaves one out
    Answer modern(const std::string& method, Json::Value params, const Headers& headers = {});

    /// A request of the older revisions.
    Answer legacy(const std::string& method, const Json::Value& params = Json::objectValue,
                  const std::string& session = {});

    /// Begins a session. @return its id
    std::string initialize(const Json::Value& capabilities = Json::objectValue);

    /// The bytes of such requests, to be sent on a connection of the test's own.
    [[nodiscard]] std::string modernBytes(const std::string& method, Json::Value params, const Headers& headers = {});
    [[nodiscard]] static std::string legacyBytes(const std::string& method, const Json::Value& params,
                                                 const std::string& session, int id = 1);

    [[nodiscard]] RawSocket connect() const { return RawSocket::connect(server.port()); }

    /// The JSON of the next event of a stream.
    static Json::Value nextEvent(RawSocket& socket);

    /// A tool that answers with what `run` gives back.
    void addTool(const std::string& name, std::function<Mcp::ToolResult(Mcp::ToolCall&)> run,
                 const Json::Value& inputSchema = {});

    Mcp::Server server;
};

/// A JSON object of one member.
[[nodiscard]] Json::Value object(const char* key, Json::Value value);

} // namespace VX::Test
