#include "McpFixture.h"

#include <VXMesh/Json.h>

#include <json/writer.h>

#include <cstdlib>
#include <utility>

namespace VX::Test
{

namespace
{

std::string toText(const Json::Value& value)
{
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    return Json::writeString(builder, value);
}

std::string bytesOf(const std::string& method, McpFixture::Headers headers, const std::string& body)
{
    headers.try_emplace("Host", "127.0.0.1");
    if (!body.empty())
        headers["Content-Length"] = std::to_string(body.size());
    std::string out = method + " /mcp HTTP/1.1\r\n";
    for (const auto& [name, value] : headers)
        if (!value.empty())
            out.append(name).append(": ").append(value).append("\r\n");
    return out.append("\r\n").append(body);
}

McpFixture::Headers jsonHeaders()
{
    return {{"Content-Type", "application/json"}, {"Accept", "application/json, text/event-stream"}};
}

std::string request(const std::string& method, const Json::Value& params, int id)
{
    Json::Value out(Json::objectValue);
    out["jsonrpc"] = "2.0";
    if (!method.starts_with("notifications/"))
        out["id"] = id;
    out["method"] = method;
    out["params"] = params;
    return toText(out);
}

McpFixture::Answer answerOf(RawSocket& socket)
{
    const std::string text = socket.receiveAnswer();
    const auto head = text.find("\r\n\r\n");
    if (head == std::string::npos)
        return {};
    McpFixture::Answer out{
        .status = std::atoi(text.c_str() + 9), .head = text.substr(0, head + 2), .body = text.substr(head + 4)};
    if (out.head.find("application/json") != std::string::npos)
        out.json = deserializeJsonValue(out.body).value_or(Json::Value());
    return out;
}

} // namespace

int McpFixture::Answer::error() const
{
    return json.isObject() && json.isMember("error") ? json["error"]["code"].asInt() : 0;
}

std::string McpFixture::Answer::text() const
{
    return json.isObject() ? json["result"]["content"][0]["text"].asString() : "";
}

void McpFixture::SetUp()
{
    const auto started = server.start({.port = 0});
    ASSERT_TRUE(started) << started.error();
}

McpFixture::Answer McpFixture::send(const std::string& method, const Headers& headers, const std::string& body)
{
    auto socket = connect();
    socket.send(bytesOf(method, headers, body));
    return answerOf(socket);
}

std::string McpFixture::modernBytes(const std::string& method, Json::Value params, const Headers& headers)
{
    Json::Value& meta = params["_meta"];
    if (!meta.isMember("io.modelcontextprotocol/protocolVersion"))
        meta["io.modelcontextprotocol/protocolVersion"] = "2026-07-28";
    if (!meta.isMember("io.modelcontextprotocol/clientCapabilities"))
        meta["io.modelcontextprotocol/clientCapabilities"] = Json::Value(Json::objectValue);
    Headers all = jsonHeaders();
    all["MCP-Protocol-Version"] = "2026-07-28";
    all["Mcp-Method"] = method;
    if (params.isMember("name"))
        all["Mcp-Name"] = params["name"].asString();
    if (params.isMember("uri"))
        all["Mcp-Name"] = params["uri"].asString();
    for (const auto& [name, value] : headers)
        all[name] = value;
    return bytesOf("POST", all, request(method, params, 1));
}

McpFixture::Answer McpFixture::modern(const std::string& method, Json::Value params, const Headers& headers)
{
    auto socket = connect();
    socket.send(modernBytes(method, std::move(params), headers));
    return answerOf(socket);
}

std::string McpFixture::legacyBytes(const std::string& method, const Json::Value& params, const std::string& session,
                                    int id)
{
    Headers headers = jsonHeaders();
    headers["Mcp-Session-Id"] = session;
    return bytesOf("POST", headers, request(method, params, id));
}

McpFixture::Answer McpFixture::legacy(const std::string& method, const Json::Value& params, const std::string& session)
{
    auto socket = connect();
    socket.send(legacyBytes(method, params, session));
    return answerOf(socket);
}

std::string McpFixture::initialize(const Json::Value& capabilities)
{
    Json::Value params(Json::objectValue);
    params["protocolVersion"] = "2025-11-25";
    params["capabilities"] = capabilities;
    params["clientInfo"] = object("name", "tester");
    const auto answer = legacy("initialize", params);
    constexpr std::string_view field = "Mcp-Session-Id: ";
    const auto found = answer.head.find(field);
    if (found == std::string::npos)
        return {};
    return answer.head.substr(found + field.size(), answer.head.find('\r', found) - found - field.size());
}

Json::Value McpFixture::nextEvent(RawSocket& socket)
{
    socket.receiveUntil("data: ");
    return deserializeJsonValue(socket.receiveUntil("\n\n")).value_or(Json::Value());
}

void McpFixture::addTool(const std::string& name, std::function<Mcp::ToolResult(Mcp::ToolCall&)> run,
                         const Json::Value& inputSchema)
{
    Mcp::Tool tool{.name = name, .inputSchema = inputSchema};
    tool.run = [run = std::move(run)](const std::shared_ptr<Mcp::ToolCall>& call, const Mcp::Tool::Answer& answer)
    { answer(run(*call)); };
    server.addTool(std::move(tool));
}

Json::Value object(const char* key, Json::Value value)
{
    Json::Value out(Json::objectValue);
    out[key] = std::move(value);
    return out;
}

} // namespace VX::Test
