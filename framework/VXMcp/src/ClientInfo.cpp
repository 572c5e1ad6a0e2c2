#include "ClientInfo.h"

namespace VX::Mcp
{

namespace
{

constexpr std::size_t longestName = 100;

bool isInsideCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

} // namespace

std::string clientNameOf(const Json::Value& clientInfo)
{
    if (!clientInfo.isObject() || !clientInfo["name"].isString())
        return {};
    std::string name = clientInfo["name"].asString();
    if (name.size() <= longestName)
        return name;
    std::size_t size = longestName;
    while (size > 0 && isInsideCharacter(name[size]))
        --size;
    name.resize(size);
    return name;
}

Json::Value capabilityFlags(const Json::Value& declared)
{
    Json::Value flags(Json::objectValue);
    for (const char* capability : {"elicitation", "sampling", "roots"})
        if (declared.isObject() && declared.isMember(capability))
            flags[capability] = Json::Value(Json::objectValue);
    return flags;
}

} // namespace VX::Mcp
