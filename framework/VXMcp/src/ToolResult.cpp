#include <VXMcp/Tool.h>

#include <utility>

namespace VX::Mcp
{

ToolResult ToolResult::error(std::string text)
{
    ToolResult out;
    out.content.push_back({.text = std::move(text)});
    out.isError = true;
    return out;
}

ToolResult ToolResult::of(Json::Value structured)
{
    ToolResult out;
    out.structured = std::move(structured);
    return out;
}

} // namespace VX::Mcp
