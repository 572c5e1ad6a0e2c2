#include "JsonText.h"

#include <json/writer.h>

#include <memory>
#include <sstream>

namespace VX::Mcp
{

std::string toJsonText(const Json::Value& value)
{
    static const auto builder = []
    {
        Json::StreamWriterBuilder out;
        out["indentation"] = "";
        // More digits than these show what rounding to binary made of decimal numbers.
        out["precision"] = 15;
        return out;
    }();
    const std::unique_ptr<Json::StreamWriter> writer(builder.newStreamWriter());
    std::ostringstream text;
    writer->write(value, &text);
    return std::move(text).str();
}

} // namespace VX::Mcp
