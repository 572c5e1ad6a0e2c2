#include "framework/VXMesh/src/Redactor.h"

#include <json/writer.h>

#include <cstdint>
#include <cstdlib>
#include <string>

namespace
{

std::string compact(const Json::Value& value)
{
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "";
    return Json::writeString(writer, value);
}

void expectWithoutSecret(const std::string& line)
{
    const auto redacted = VX::redact(line);
    if (!redacted || redacted->find("s3cr3t") != std::string::npos)
        std::abort();
}

} // namespace

// Any line can be read, and no password gets through, whatever stands in it and however deep in JSON it is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    static_cast<void>(VX::redact(text));
    Json::Value body(Json::objectValue);
    body["password"] = text + "s3cr3t" + text;
    std::string line = compact(body);
    for (int depth = 0; depth < 3; ++depth)
    {
        expectWithoutSecret(line);
        line = compact(Json::Value(line));
    }
    return 0;
}
