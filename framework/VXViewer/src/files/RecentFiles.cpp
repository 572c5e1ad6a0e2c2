#include <VXMesh/Config.h>
#include <VXMesh/StringConvert.h>
#include <VXViewer/RecentFiles.h>

#include <algorithm>
#include <string>
#include <system_error>

namespace VX
{

namespace
{

constexpr const char* configKey = "recentFiles";

std::vector<std::string> stored()
{
    const Json::Value list = Config::instance().getJson(configKey, Json::arrayValue);
    std::vector<std::string> names;
    if (!list.isArray())
        return names;
    for (const Json::Value& name : list)
    {
        if (name.isString() && !name.asString().empty())
            names.push_back(name.asString());
    }
    return names;
}

void store(const std::vector<std::string>& names)
{
    Json::Value list = Json::arrayValue;
    for (const std::string& name : names)
        list.append(name);
    Config::instance().setJson(configKey, list);
}

} // namespace

std::vector<std::filesystem::path> RecentFiles::list() const
{
    std::vector<std::filesystem::path> paths;
    for (const std::string& name : stored())
    {
        std::filesystem::path path = pathFromUtf8(name);
        std::error_code error;
        if (std::filesystem::is_regular_file(path, error))
            paths.push_back(std::move(path));
    }
    return paths;
}

void RecentFiles::add(const std::filesystem::path& path)
{
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    if (!recording_ || error)
        return;
    const std::string name = utf8string(absolute.lexically_normal());
    std::vector<std::string> names = stored();
    std::erase(names, name);
    names.insert(names.begin(), name);
    names.resize(std::min(names.size(), maxCount));
    store(names);
}

void RecentFiles::clear()
{
    store({});
}

} // namespace VX
