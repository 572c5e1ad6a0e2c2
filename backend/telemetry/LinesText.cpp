#include "LinesText.h"

#include "PrintableText.h"

#include <fmt/format.h>
#include <json/value.h>
#include <json/writer.h>

namespace VX
{

std::string linesText(const std::vector<LoggedLine>& lines)
{
    std::string text;
    for (const LoggedLine& line : lines)
        text += printableText(fmt::format("{} {} {} {} {} {} {}", line.time, line.level,
                                          line.account.empty() ? "-" : line.account, line.service, line.version,
                                          line.platform, line.message)) +
                '\n';
    return text;
}

std::string linesJson(const std::vector<LoggedLine>& lines)
{
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "";
    std::string text;
    for (const LoggedLine& line : lines)
    {
        Json::Value document;
        document["user"] = line.account;
        document["timestamp"] = line.time;
        document["logLevel"] = line.level;
        document["serviceName"] = line.service;
        document["serviceVersion"] = line.version;
        document["platform"] = line.platform;
        document["environment"] = line.environment;
        document["message"] = line.message;
        text += Json::writeString(writer, document) + '\n';
    }
    return text;
}

} // namespace VX
