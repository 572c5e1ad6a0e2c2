#include "Access.h"

#include "McpFixture.h"

namespace VX::Test
{

namespace
{

using AccessTests = McpFixture;

constexpr const char* ping = R"({"jsonrpc":"2.0","id":1,"method":"ping"})";

} // namespace

TEST(Access, KnowsTheNamesOfThisMachine)
{
    for (const char* host : {"localhost", "LOCALHOST:7431", "127.0.0.1", "127.0.0.1:80", "[::1]", "[::1]:80"})
        EXPECT_TRUE(Mcp::isLoopbackHost(host)) << host;
    for (const char* host : {"", "example.com", "localhost.example.com", "127.0.0.1.example.com",
                             "localhost:", "127.0.0.10", "localhost:80x", "a@localhost", "10.0.0.1"})
        EXPECT_FALSE(Mcp::isLoopbackHost(host)) << host;
}

TEST(Access, KnowsThePagesOfThisMachine)
{
    for (const char* origin : {"http://localhost", "https://127.0.0.1:8443", "http://[::1]:3000"})
        EXPECT_TRUE(Mcp::isLoopbackOrigin(origin)) << origin;
    for (const char* origin : {"null", "", "http://evil.example.com", "http://localhost.evil.com", "file://localhost",
                               "http://127.0.0.1:80/"})
        EXPECT_FALSE(Mcp::isLoopbackOrigin(origin)) << origin;
}

TEST_F(AccessTests, AForeignHostOrOriginIsForbidden)
{
    Headers headers{{"Content-Type", "application/json"}};
    EXPECT_EQ(send("POST", headers, ping).status, 200);
    headers["Origin"] = "http://localhost:3000";
    EXPECT_EQ(send("POST", headers, ping).status, 200);
    headers["Origin"] = "http://evil.example.com";
    EXPECT_EQ(send("POST", headers, ping).status, 403);
    headers.erase("Origin");
    headers["Host"] = "evil.example.com";
    EXPECT_EQ(send("POST", headers, ping).status, 403);
}

TEST_F(AccessTests, TheTokenIsNeededWhereThereIsOne)
{
    ASSERT_TRUE(server.start({.port = 0, .bearerToken = "secret"}));
    Headers headers{{"Content-Type", "application/json"}};
    EXPECT_EQ(send("POST", headers, ping).status, 401);
    for (const char* wrong : {"Bearer secre", "Bearer secret2", "Basic secret", "Bearer", "secret"})
    {
        headers["Authorization"] = wrong;
        EXPECT_EQ(send("POST", headers, ping).status, 401) << wrong;
    }
    headers["Authorization"] = "bearer secret";
    EXPECT_EQ(send("POST", headers, ping).status, 200);
}

TEST_F(AccessTests, OtherPathsAndTypesAreRefused)
{
    EXPECT_EQ(send("POST", {{"Content-Type", "text/plain"}}, ping).status, 415);
    auto socket = connect();
    socket.send("GET /other HTTP/1.1\r\nHost: localhost\r\n\r\n");
    EXPECT_TRUE(socket.receiveAnswer().starts_with("HTTP/1.1 404 "));
}

TEST_F(AccessTests, TheTypeIsWhatComesBeforeItsParameters)
{
    EXPECT_EQ(send("POST", {{"Content-Type", "Application/JSON ; charset=utf-8"}}, ping).status, 200);
    for (const char* type : {"text/plain; a=application/json", "application/json-seq", "xapplication/json"})
        EXPECT_EQ(send("POST", {{"Content-Type", type}}, ping).status, 415) << type;
}

TEST_F(AccessTests, ABodyOverTheLimitIsRefusedUnread)
{
    auto socket = connect();
    socket.send(
        "POST /mcp HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/json\r\nContent-Length: 5000000\r\n\r\n");
    EXPECT_TRUE(socket.receiveAnswer().starts_with("HTTP/1.1 413 "));
}

TEST_F(AccessTests, WhatIsNoMessageIsABadRequest)
{
    for (const char* body : {"nonsense", "[]", "{}", R"([{"jsonrpc":"2.0","id":1,"method":"ping"}])"})
    {
        const auto answer = send("POST", {{"Content-Type", "application/json"}}, body);
        EXPECT_EQ(answer.status, 400) << body;
        EXPECT_NE(answer.error(), 0) << body;
    }
}

} // namespace VX::Test
