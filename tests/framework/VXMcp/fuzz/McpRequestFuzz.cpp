#include "tests/support/RawSocket.h"

#include <VXMcp/Server.h>
#include <VXMesh/Json.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace
{

VX::Mcp::Server& server()
{
    static VX::Mcp::Server out;
    if (out.isRunning())
        return out;
    VX::Mcp::Tool echo{.name = "echo", .description = "Answers with its arguments"};
    echo.inputSchema = *VX::deserializeJsonValue(
        R"({"type": "object", "additionalProperties": false, "required": ["a"], "properties": {
            "a": {"type": ["integer", "string"], "minimum": 0, "maxLength": 3},
            "b": {"type": "array", "items": {"enum": [1, "x", null]}, "minItems": 1, "maxItems": 2}}})");
    echo.run = [](const std::shared_ptr<VX::Mcp::ToolCall>& call, const VX::Mcp::Tool::Answer& answer)
    {
        call->progress(1, 2, "half");
        answer(VX::Mcp::ToolResult::of(call->arguments()));
    };
    out.addTool(std::move(echo));
    out.addResource({.uri = "test://a",
                     .name = "a",
                     .mimeType = "text/plain",
                     .read = [](const VX::Mcp::Resource::Answer& answer) { answer("content"); }});
    out.addPrompt({.name = "p",
                   .arguments = {{.name = "x"}},
                   .messages = [](const Json::Value& arguments) { return arguments; }});
    if (!out.start({.port = 0}))
        std::abort();
    return out;
}

} // namespace

// The input is an HTTP message without its first line and its Content-Length: header fields, an empty line, a body.
// Whatever it holds, the answer has a known form: nothing, or a status with a JSON object or events as the body.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto end = input.find("\n\n");
    std::string request = "POST /mcp HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n";
    if (end != std::string_view::npos)
        request.append(input.substr(0, end)).append("\r\n");
    const auto body = end == std::string_view::npos ? input : input.substr(end + 2);
    request += "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    auto socket = VX::Test::RawSocket::connect(server().port());
    socket.send(request.append(body));
    socket.finishSending();
    const std::string answer = socket.receiveAll();
    if (!answer.empty() && !answer.starts_with("HTTP/1.1 "))
        std::abort();
    const auto head = answer.find("\r\n\r\n");
    if (answer.find("Content-Type: application/json") < head && !VX::deserializeJsonValue(answer.substr(head + 4)))
        std::abort();
    return 0;
}
