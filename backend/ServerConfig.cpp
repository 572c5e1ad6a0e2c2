#include "ServerConfig.h"

#include "JobQueue.h"
#include "MachineMemory.h"

#include <VXMesh/Json.h>
#include <VXMesh/StringConvert.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>

namespace VX
{

namespace
{

using Result = tl::expected<void, std::string>;
/// Puts the value of one member into the configuration.
using Reader = std::function<Result(const std::string& name, const Json::Value& value, ServerConfig& config)>;

constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20U;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
/// The converter of such a build reserves terabytes at its start, which count against a limit.
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

/// A whole number from `from` to `to`, given to `store`.
Reader number(std::uint64_t from, std::uint64_t to, std::function<void(std::uint64_t, ServerConfig&)> store)
{
    return [from, to, store = std::move(store)](const std::string& name, const Json::Value& value,
                                                ServerConfig& config) -> Result
    {
        if (!value.isUInt64() || value.asUInt64() < from || value.asUInt64() > to)
            return tl::unexpected(fmt::format("\"{}\" must be a whole number from {} to {}.", name, from, to));
        store(value.asUInt64(), config);
        return {};
    };
}

Reader seconds(std::uint64_t from, std::uint64_t to, std::chrono::seconds ServerConfig::* member)
{
    return number(from, to,
                  [=](std::uint64_t value, ServerConfig& config) { config.*member = std::chrono::seconds(value); });
}

Result readPublicUrl(const std::string& name, const Json::Value& value, ServerConfig& config)
{
    if (value.isString())
        config.publicUrl = value.asString();
    while (config.publicUrl.ends_with('/'))
        config.publicUrl.pop_back();
    if (!config.publicUrl.starts_with("http://") && !config.publicUrl.starts_with("https://"))
        return tl::unexpected(fmt::format("\"{}\" must be an http or https address.", name));
    return {};
}

Result readConverter(const std::string& name, const Json::Value& value, ServerConfig& config)
{
    if (value.isString())
        config.converter = pathFromUtf8(value.asString());
    if (!config.converter.is_absolute())
        return tl::unexpected(fmt::format("\"{}\" must be the absolute path of a program.", name));
    return {};
}

Reader flag(bool ServerConfig::* member)
{
    return [member](const std::string& name, const Json::Value& value, ServerConfig& config) -> Result
    {
        if (!value.isBool())
            return tl::unexpected(fmt::format("\"{}\" must be true or false.", name));
        config.*member = value.asBool();
        return {};
    };
}

Result readBlockedDomains(const std::string& name, const Json::Value& value, ServerConfig& config)
{
    const bool isList = value.isArray() && std::all_of(value.begin(), value.end(), [](const Json::Value& domain)
                                                       { return domain.isString() && !domain.asString().empty(); });
    if (!isList)
        return tl::unexpected(fmt::format("\"{}\" must be a list of domains.", name));
    for (const Json::Value& domain : value)
        config.blockedDomains.push_back(toLower(domain.asString()));
    return {};
}

/// Passwords go there: the way must be safe.
bool isSafeUrl(const std::string& url)
{
    if (url.starts_with("https://"))
        return true;
    for (const char* local : {"http://127.0.0.1", "http://localhost", "http://[::1]"})
        if (url.starts_with(local) &&
            (url.size() == std::strlen(local) || url[std::strlen(local)] == ':' || url[std::strlen(local)] == '/'))
            return true;
    return false;
}

Result readIdentityEndpoint(const std::string& name, const Json::Value& value, ServerConfig& config)
{
    if (value.isString())
        config.identityEndpoint = value.asString();
    if (!isSafeUrl(config.identityEndpoint))
        return tl::unexpected(
            fmt::format("\"{}\" must be an https address, or an http address of this machine.", name));
    return {};
}

Result readIdentityClientId(const std::string& name, const Json::Value& value, ServerConfig& config)
{
    if (value.isString())
        config.identityClientId = value.asString();
    if (config.identityClientId.empty())
        return tl::unexpected(fmt::format("\"{}\" must be a string that is not empty.", name));
    return {};
}

std::map<std::string, Reader> makeReaders()
{
    constexpr std::uint64_t day = std::uint64_t{24} * 3600;
    constexpr std::uint64_t tebibyte = mebibyte; // counted in mebibytes
    return {
        {"publicUrl", readPublicUrl},
        {"requireToken", flag(&ServerConfig::requireToken)},
        {"trustForwardedFor", flag(&ServerConfig::trustForwardedFor)},
        {"blockedDomains", readBlockedDomains},
        {"identityEndpoint", readIdentityEndpoint},
        {"identityClientId", readIdentityClientId},
        {"converter", readConverter},
        {"workers", number(1, 256, [](std::uint64_t n, ServerConfig& c) { c.workers = static_cast<unsigned>(n); })},
        {"timeLimitSeconds",
         number(1, day, [](std::uint64_t n, ServerConfig& c) { c.limits.time = std::chrono::seconds(n); })},
        {"memoryLimitMiB",
         number(0, tebibyte, [](std::uint64_t n, ServerConfig& c) { c.limits.memory = n * mebibyte; })},
        {"inputLimitMiB", number(1, tebibyte, [](std::uint64_t n, ServerConfig& c) { c.limits.input = n * mebibyte; })},
        {"uploadLimitMiB", number(1, tebibyte, [](std::uint64_t n, ServerConfig& c) { c.uploadLimit = n * mebibyte; })},
        {"leaseSeconds", seconds(1, std::chrono::duration_cast<std::chrono::seconds>(JobQueue::longestLease).count(),
                                 &ServerConfig::lease)},
        {"linkLifetimeSeconds", seconds(1, 7 * day, &ServerConfig::linkLifetime)},
        {"keepSeconds", seconds(1, 365 * day, &ServerConfig::keep)},
        {"keepLogsDays",
         number(1, 3650, [](std::uint64_t n, ServerConfig& c) { c.keepLogs = std::chrono::hours(24) * n; })},
        {"statusHoldMilliseconds",
         number(0, 60'000, [](std::uint64_t n, ServerConfig& c) { c.statusHold = std::chrono::milliseconds(n); })},
    };
}

tl::expected<ServerConfig, std::string> readConfig(const Json::Value& document)
{
    if (!document.isObject())
        return tl::unexpected(std::string("It must be a JSON object."));
    static const std::map<std::string, Reader> readers = makeReaders();

    ServerConfig config = defaultServerConfig();
    for (const std::string& name : document.getMemberNames())
    {
        const auto reader = readers.find(name);
        if (reader == readers.end())
            return tl::unexpected(fmt::format("\"{}\" is not a known setting.", name));
        if (auto read = reader->second(name, document[name], config); !read)
            return tl::unexpected(std::move(read.error()));
    }
    if (config.identityEndpoint.empty() != config.identityClientId.empty())
        return tl::unexpected(std::string("\"identityEndpoint\" and \"identityClientId\" go together."));
    return config;
}

} // namespace

ServerConfig defaultServerConfig()
{
    ServerConfig config;
    config.limits.memory = isSanitized ? 0 : std::max(machineMemory() / 2, 1024 * mebibyte);
    return config;
}

tl::expected<ServerConfig, std::string> parseServerConfig(const std::string& text)
{
    return deserializeJsonValue(text).and_then(readConfig);
}

tl::expected<ServerConfig, std::string> loadServerConfig(const std::filesystem::path& file)
{
    auto config = deserializeJsonValue(file).and_then(readConfig);
    if (!config)
        return tl::unexpected(fmt::format("The configuration file \"{}\" cannot be used: {}",
                                          utf8string(file.filename()), config.error()));
    return config;
}

} // namespace VX
