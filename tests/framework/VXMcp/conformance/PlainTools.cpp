#include "Fixtures.h"

#include <VXMesh/Json.h>

#include <functional>
#include <string>
#include <utility>

namespace VX::Test
{

namespace
{

using Mcp::Content;
using Mcp::Tool;
using Mcp::ToolCall;
using Mcp::ToolResult;

/// A silent recording of one sample.
std::string shortWav()
{
    using namespace std::string_literals;
    return "RIFF\x26\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x40\x1f\0\0\x40\x1f\0\0\1\0\x08\0data\2\0\0\0\x80\x80"s;
}

Content text(std::string words)
{
    return {.text = std::move(words)};
}

Content image()
{
    return {.type = Content::Type::Image, .mimeType = "image/png", .data = onePixelPng()};
}

Content resource(std::string uri, std::string words)
{
    return {.type = Content::Type::Resource, .text = std::move(words), .mimeType = "text/plain", .uri = std::move(uri)};
}

void add(Mcp::Server& server, const char* name, const char* description, std::function<ToolResult(ToolCall&)> run)
{
    Tool tool{.name = name, .description = description};
    tool.run = [run = std::move(run)](const std::shared_ptr<ToolCall>& call, const Tool::Answer& answer)
    { answer(run(*call)); };
    server.addTool(std::move(tool));
}

void addContent(Mcp::Server& server, const char* name, const char* description, std::vector<Content> content)
{
    add(server, name, description,
        [content = std::move(content)](ToolCall&) { return ToolResult{.content = content}; });
}

/// A tool whose schema uses what a server passes on without understanding it.
void addSchemaTool(Mcp::Server& server)
{
    Tool tool{.name = "json_schema_2020_12_tool", .description = "Tool with JSON Schema 2020-12 features"};
    tool.inputSchema = *deserializeJsonValue(R"({
        "$schema": "https://json-schema.org/draft/2020-12/schema",
        "type": "object",
        "$defs": {"address": {"$anchor": "addressDef", "type": "object",
                              "properties": {"street": {"type": "string"}, "city": {"type": "string"}}}},
        "properties": {"name": {"type": "string"}, "address": {"$ref": "#/$defs/address"},
                       "contactMethod": {"type": "string", "enum": ["phone", "email"]},
                       "phone": {"type": "string"}, "email": {"type": "string"}},
        "allOf": [{"anyOf": [{"required": ["phone"]}, {"required": ["email"]}]}],
        "if": {"properties": {"contactMethod": {"const": "phone"}}, "required": ["contactMethod"]},
        "then": {"required": ["phone"]},
        "else": {"required": ["email"]},
        "additionalProperties": false})");
    tool.run = [](const std::shared_ptr<ToolCall>& call, const Tool::Answer& answer)
    { answer(ToolResult::of(call->arguments())); };
    server.addTool(std::move(tool));
}

/// Tools that change the lists while clients listen.
void addTriggers(Mcp::Server& server)
{
    add(server, "test_trigger_tool_change", "Adds a tool and removes it",
        [&server](ToolCall&)
        {
            addContent(server, "test_passing_tool", "Comes and goes", {});
            server.removeTool("test_passing_tool");
            return ToolResult{.content = {text("The list of tools has changed.")}};
        });
    add(server, "test_trigger_prompt_change", "Adds a prompt",
        [&server](ToolCall&)
        {
            server.addPrompt({.name = "test_new_prompt",
                              .description = "Comes late",
                              .messages = [](const Json::Value&) { return Json::Value(Json::arrayValue); }});
            return ToolResult{.content = {text("The list of prompts has changed.")}};
        });
}

} // namespace

void addPlainTools(Mcp::Server& server)
{
    addContent(server, "test_simple_text", "Answers with a text",
               {text("This is a simple text response for testing.")});
    addContent(server, "test_image_content", "Answers with a picture", {image()});
    addContent(server, "test_audio_content", "Answers with a recording",
               {{.type = Content::Type::Audio, .mimeType = "audio/wav", .data = shortWav()}});
    addContent(server, "test_embedded_resource", "Answers with a resource",
               {resource("test://embedded-resource", "This is an embedded resource content.")});
    addContent(server, "test_multiple_content_types", "Answers with a text, a picture and a resource",
               {text("Multiple content types test:"), image(), resource("test://mixed-content-resource", "{}")});
    add(server, "test_error_handling", "Fails",
        [](ToolCall&) { return ToolResult::error("This tool intentionally returns an error for testing"); });
    add(server, "test_tool_with_progress", "Reports progress",
        [](ToolCall& call)
        {
            for (const double value : {0.0, 50.0, 100.0})
                call.progress(value, 100, "Working");
            return ToolResult{.content = {text("Done")}};
        });
    for (const char* name : {"test_tool_with_logging", "test_logging_tool"})
        add(server, name, "Sends log messages",
            [](ToolCall& call)
            {
                for (const char* message :
                     {"Tool execution started", "Tool processing data", "Tool execution completed"})
                    call.log("info", message);
                return ToolResult{.content = {text("Done")}};
            });
    addSchemaTool(server);
    addTriggers(server);
}

} // namespace VX::Test
