#include "Fixtures.h"

#include <VXMesh/Json.h>

#include <string>
#include <utility>

namespace VX::Test
{

namespace
{

using Mcp::Resource;

void addText(Mcp::Server& server, const char* uri, const char* name, std::string content)
{
    server.addResource({.uri = uri,
                        .name = name,
                        .description = "A text",
                        .mimeType = "text/plain",
                        .read = [content = std::move(content)](const Resource::Answer& answer) { answer(content); }});
}

Json::Value message(const char* content)
{
    Json::Value out(Json::arrayValue);
    Json::Value& one = out.append(Json::Value(Json::objectValue));
    one["role"] = "user";
    one["content"] = *deserializeJsonValue(content);
    return out;
}

Json::Value textMessage(const std::string& text)
{
    Json::Value out = message(R"({"type": "text"})");
    out[0]["content"]["text"] = text;
    return out;
}

} // namespace

std::string onePixelPng()
{
    using namespace std::string_literals;
    return "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\x08\6\0\0\0\x1f\x15\xc4\x89\0\0\0\rIDATx\xda"
           "cd\xf8\xcfP\x0f\0\3\x86\1\x80Z4}k\0\0\0\0IEND\xae\x42`\x82"s;
}

void addResources(Mcp::Server& server)
{
    addText(server, "test://static-text", "Static text", "This is the content of the static text resource.");
    addText(server, "test://watched-resource", "Watched text", "Watched resource content");
    addText(server, "test://example-resource", "Example", "Embedded resource content for testing.");
    server.addResource({.uri = "test://static-binary",
                        .name = "Static picture",
                        .description = "A picture",
                        .mimeType = "image/png",
                        .read = [](const Resource::Answer& answer) { answer(onePixelPng()); }});
    server.addResourceTemplate({.uriTemplate = "test://template/{id}/data",
                                .name = "Template",
                                .description = "A text for each id",
                                .mimeType = "application/json",
                                .read = [](const std::string&, const std::map<std::string, std::string>& variables,
                                           const Resource::Answer& answer)
                                {
                                    Json::Value content(Json::objectValue);
                                    content["id"] = variables.at("id");
                                    content["templateTest"] = true;
                                    content["data"] = "Data for ID: " + variables.at("id");
                                    answer(content.toStyledString());
                                }});
}

void addPrompts(Mcp::Server& server)
{
    server.addPrompt(
        {.name = "test_simple_prompt",
         .description = "A prompt without arguments",
         .messages = [](const Json::Value&) { return textMessage("This is a simple prompt for testing."); }});
    server.addPrompt({.name = "test_prompt_with_arguments",
                      .description = "A prompt with two arguments",
                      .arguments = {{.name = "arg1", .description = "First test argument", .required = true},
                                    {.name = "arg2", .description = "Second test argument", .required = true}},
                      .messages =
                          [](const Json::Value& arguments)
                      {
                          return textMessage("Prompt with arguments: arg1='" + arguments["arg1"].asString() +
                                             "', arg2='" + arguments["arg2"].asString() + "'");
                      },
                      .complete = [](const std::string&, const std::string&)
                      { return std::vector<std::string>{"test", "testing"}; }});
    server.addPrompt(
        {.name = "test_prompt_with_embedded_resource",
         .description = "A prompt with a resource",
         .arguments = {{.name = "resourceUri", .description = "URI of the resource to embed", .required = true}},
         .messages = [](const Json::Value& arguments)
         {
             Json::Value out = message(R"({"type": "resource", "resource": {"mimeType": "text/plain",
                                           "text": "Embedded resource content for testing."}})");
             out[0]["content"]["resource"]["uri"] = arguments["resourceUri"];
             return out;
         }});
    server.addPrompt({.name = "test_prompt_with_image",
                      .description = "A prompt with a picture",
                      .messages = [](const Json::Value&)
                      { return message(R"({"type": "image", "mimeType": "image/png", "data": "iVBORw0KGgo="})"); }});
}

} // namespace VX::Test
