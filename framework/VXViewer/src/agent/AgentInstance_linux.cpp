#include <VXMesh/AtomicFile.h>
#include <VXMesh/Json.h>
#include <VXMesh/UserFolders.h>
#include <VXViewer/AgentInstance.h>

#include <json/json.h>

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

constexpr std::string_view prefix = "agents-";
constexpr std::string_view suffix = ".json";

std::filesystem::path ownFile()
{
    return getUserRuntimeDir() / (std::string(prefix) + std::to_string(::getpid()) + std::string(suffix));
}

bool isRunning(std::int64_t process)
{
    // A process of another user has the number of one that is gone.
    return process > 0 && ::kill(static_cast<pid_t>(process), 0) == 0;
}

bool isInstanceFile(const std::filesystem::path& file)
{
    const std::string name = file.filename().string();
    return name.starts_with(prefix) && name.ends_with(suffix);
}

/// What the file says; with process 0 where it cannot be understood.
AgentInstance readInstance(const std::filesystem::path& file)
{
    const auto value = deserializeJsonValue(file);
    if (!value || !value->isObject() || !(*value)["process"].isInt64() || !(*value)["port"].isUInt() ||
        (*value)["port"].asUInt() > UINT16_MAX)
        return {};
    return {(*value)["process"].asInt64(), static_cast<std::uint16_t>((*value)["port"].asUInt())};
}

} // namespace

tl::expected<void, std::string> announceAgentInstance(std::uint16_t port)
{
    const std::filesystem::path file = ownFile();
    if (auto created = createUserFolder(file.parent_path()); !created)
        return created;
    Json::Value value;
    value["process"] = Json::Int64(::getpid());
    value["port"] = port;
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "";
    return writeFileAtomically(file, Json::writeString(writer, value), privateFileMode);
}

void withdrawAgentInstance()
{
    std::error_code ignored;
    std::filesystem::remove(ownFile(), ignored);
}

std::vector<AgentInstance> findAgentInstances()
{
    std::vector<std::pair<std::filesystem::file_time_type, AgentInstance>> found;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(getUserRuntimeDir(), error))
    {
        if (!isInstanceFile(entry.path()))
            continue;
        const AgentInstance instance = readInstance(entry.path());
        std::error_code ignored;
        if (isRunning(instance.process))
            found.emplace_back(entry.last_write_time(ignored), instance);
        else
            std::filesystem::remove(entry.path(), ignored);
    }
    std::ranges::sort(found, [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<AgentInstance> instances;
    instances.reserve(found.size());
    for (const auto& [time, instance] : found)
        instances.push_back(instance);
    return instances;
}

} // namespace VX
