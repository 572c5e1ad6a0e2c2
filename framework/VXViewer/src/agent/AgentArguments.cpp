#include "AgentArguments.h"

#include <VXMesh/Object.h>

#include <fmt/format.h>

#include <algorithm>
#include <unordered_map>

namespace VX
{

namespace
{

std::string unknownId(std::uint64_t id)
{
    return fmt::format("No object has the id {}. Call \"scene.list\" for the ids of the objects that there are.", id);
}

} // namespace

std::string AgentArguments::text(const char* name, const char* defaultValue) const
{
    return has(name) ? values_[name].asString() : defaultValue;
}

bool AgentArguments::flag(const char* name, bool defaultValue) const
{
    return has(name) ? values_[name].asBool() : defaultValue;
}

int AgentArguments::integer(const char* name, int defaultValue) const
{
    return has(name) ? values_[name].asInt() : defaultValue;
}

double AgentArguments::number(const char* name, double defaultValue) const
{
    return has(name) ? values_[name].asDouble() : defaultValue;
}

std::optional<Vector3d> AgentArguments::vector(const char* name) const
{
    const std::vector<double> values = numbers(name);
    return values.size() == 3 ? std::optional(Vector3d(values[0], values[1], values[2])) : std::nullopt;
}

std::vector<double> AgentArguments::numbers(const char* name) const
{
    std::vector<double> values;
    if (has(name))
    {
        for (const Json::Value& value : values_[name])
            values.push_back(value.asDouble());
    }
    return values;
}

std::vector<std::string> AgentArguments::texts(const char* name) const
{
    std::vector<std::string> values;
    if (has(name))
    {
        for (const Json::Value& value : values_[name])
            values.push_back(value.asString());
    }
    return values;
}

std::vector<std::uint64_t> AgentArguments::ids(const char* name) const
{
    std::vector<std::uint64_t> values;
    if (has(name))
    {
        for (const Json::Value& value : values_[name])
            values.push_back(value.asUInt64());
    }
    return values;
}

std::optional<AgentArguments> AgentArguments::below(const char* name) const
{
    return has(name) ? std::optional(AgentArguments(values_[name])) : std::nullopt;
}

tl::expected<std::shared_ptr<Object>, std::string> AgentArguments::object(const char* name, Object& root) const
{
    const std::uint64_t id = values_[name].asUInt64();
    std::shared_ptr<Object> found;
    visitObjects(root,
                 [&](Object& object)
                 {
                     if (object.id() == id)
                         found = object.shared_from_this();
                 });
    if (!found)
        return tl::unexpected(unknownId(id));
    return found;
}

tl::expected<std::vector<std::shared_ptr<Object>>, std::string> AgentArguments::objects(const char* name,
                                                                                        Object& root) const
{
    std::vector<std::shared_ptr<Object>> found;
    if (!has(name))
        return found;
    std::unordered_map<std::uint64_t, Object*> byId;
    visitObjects(root, [&](Object& object) { byId.emplace(object.id(), &object); });
    for (const std::uint64_t id : ids(name))
    {
        const auto entry = byId.find(id);
        if (entry == byId.end())
            return tl::unexpected(unknownId(id));
        if (entry->second == &root)
            return tl::unexpected(std::string("The root of the scene is none of its objects. Name objects below it."));
        std::shared_ptr<Object> object = entry->second->shared_from_this();
        if (std::ranges::find(found, object) == found.end())
            found.push_back(std::move(object));
    }
    return found;
}

tl::expected<std::vector<std::shared_ptr<Object>>, std::string> AgentArguments::someObjects(const char* name,
                                                                                            Object& root) const
{
    auto found = objects(name, root);
    if (found && found->empty())
        return tl::unexpected(fmt::format("Name at least one object in \"{}\".", name));
    return found;
}

} // namespace VX
