#include "Wire.h"

#include "JsonText.h"
#include "Secrets.h"

namespace VX::Mcp
{

namespace
{

void setUnlessEmpty(Json::Value& out, const char* key, const std::string& value)
{
    if (!value.empty())
        out[key] = value;
}

/// What all that can be listed has.
template <typename T>
Json::Value described(const T& thing)
{
    Json::Value out(Json::objectValue);
    out["name"] = thing.name;
    setUnlessEmpty(out, "title", thing.title);
    setUnlessEmpty(out, "description", thing.description);
    return out;
}

bool isText(const std::string& mimeType)
{
    return mimeType.starts_with("text/") || mimeType.ends_with("json") || mimeType.ends_with("xml");
}

Json::Value toWire(const Content& content)
{
    Json::Value out(Json::objectValue);
    switch (content.type)
    {
    case Content::Type::Text:
        out["type"] = "text";
        out["text"] = content.text;
        break;
    case Content::Type::Image:
    case Content::Type::Audio:
        out["type"] = content.type == Content::Type::Image ? "image" : "audio";
        out["data"] = toBase64(content.data);
        out["mimeType"] = content.mimeType;
        break;
    case Content::Type::Resource:
        out["type"] = "resource";
        out["resource"]["uri"] = content.uri;
        setUnlessEmpty(out["resource"], "mimeType", content.mimeType);
        if (content.data.empty())
            out["resource"]["text"] = content.text;
        else
            out["resource"]["blob"] = toBase64(content.data);
        break;
    case Content::Type::ResourceLink:
        out["type"] = "resource_link";
        out["uri"] = content.uri;
        out["name"] = content.text;
        setUnlessEmpty(out, "mimeType", content.mimeType);
        break;
    }
    return out;
}

} // namespace

Json::Value toWire(const Tool& tool)
{
    Json::Value out = described(tool);
    out["inputSchema"] = tool.inputSchema;
    if (!out["inputSchema"].isObject())
        out["inputSchema"] = Json::Value(Json::objectValue);
    if (!out["inputSchema"].isMember("type"))
        out["inputSchema"]["type"] = "object";
    if (!tool.outputSchema.isNull())
        out["outputSchema"] = tool.outputSchema;
    Json::Value& hints = out["annotations"];
    setUnlessEmpty(hints, "title", tool.title);
    hints["readOnlyHint"] = tool.readOnly;
    hints["destructiveHint"] = tool.destructive;
    hints["idempotentHint"] = tool.idempotent;
    hints["openWorldHint"] = tool.openWorld;
    return out;
}

Json::Value toWire(const Resource& resource)
{
    Json::Value out = described(resource);
    out["uri"] = resource.uri;
    setUnlessEmpty(out, "mimeType", resource.mimeType);
    return out;
}

Json::Value toWire(const ResourceTemplate& resourceTemplate)
{
    Json::Value out = described(resourceTemplate);
    out["uriTemplate"] = resourceTemplate.uriTemplate;
    setUnlessEmpty(out, "mimeType", resourceTemplate.mimeType);
    return out;
}

Json::Value toWire(const Prompt& prompt)
{
    Json::Value out = described(prompt);
    for (const auto& argument : prompt.arguments)
    {
        Json::Value one(Json::objectValue);
        one["name"] = argument.name;
        setUnlessEmpty(one, "description", argument.description);
        one["required"] = argument.required;
        out["arguments"].append(std::move(one));
    }
    return out;
}

Json::Value toWire(const ToolResult& result)
{
    Json::Value out(Json::objectValue);
    Json::Value& content = out["content"] = Json::Value(Json::arrayValue);
    for (const auto& piece : result.content)
        content.append(toWire(piece));
    const bool isStructured = !result.structured.isNull();
    if (result.content.empty() && isStructured)
        content.append(toWire(Content{.text = toJsonText(result.structured)}));
    if (isStructured && !result.isError)
        out["structuredContent"] = result.structured;
    if (result.isError)
        out["isError"] = true;
    return out;
}

Json::Value resourceContents(const std::string& uri, const std::string& mimeType, const std::string& content)
{
    Json::Value out(Json::objectValue);
    out["uri"] = uri;
    setUnlessEmpty(out, "mimeType", mimeType);
    if (isText(mimeType))
        out["text"] = content;
    else
        out["blob"] = toBase64(content);
    return out;
}

} // namespace VX::Mcp
