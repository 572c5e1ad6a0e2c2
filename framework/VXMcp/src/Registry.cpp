#include "Registry.h"

#include <utility>

namespace VX::Mcp
{

namespace
{

template <typename T>
std::shared_ptr<const T> find(const Registry::Table<T>& table, const std::string& key)
{
    const auto found = table.find(key);
    return found == table.end() ? nullptr : found->second;
}

} // namespace

void Registry::addTool(Tool tool)
{
    auto entry = std::make_shared<const Tool>(std::move(tool));
    const MutexLock lock(mutex_);
    tools_[entry->name] = entry;
}

void Registry::removeTool(const std::string& name)
{
    const MutexLock lock(mutex_);
    tools_.erase(name);
}

void Registry::addResource(Resource resource)
{
    auto entry = std::make_shared<const Resource>(std::move(resource));
    const MutexLock lock(mutex_);
    resources_[entry->uri] = entry;
}

void Registry::addResourceTemplate(ResourceTemplate resourceTemplate)
{
    auto entry = std::make_shared<const ResourceTemplate>(std::move(resourceTemplate));
    const MutexLock lock(mutex_);
    resourceTemplates_[entry->uriTemplate] = entry;
}

void Registry::addPrompt(Prompt prompt)
{
    auto entry = std::make_shared<const Prompt>(std::move(prompt));
    const MutexLock lock(mutex_);
    prompts_[entry->name] = entry;
}

void Registry::addAlias(std::string alias, std::string toolName)
{
    const MutexLock lock(mutex_);
    aliases_[std::move(alias)] = std::move(toolName);
}

void Registry::clear()
{
    // Destroyed without the lock: what a tool owns may take its time to end.
    Table<Tool> tools;
    Table<Resource> resources;
    Table<ResourceTemplate> resourceTemplates;
    Table<Prompt> prompts;
    const MutexLock lock(mutex_);
    tools.swap(tools_);
    resources.swap(resources_);
    resourceTemplates.swap(resourceTemplates_);
    prompts.swap(prompts_);
    aliases_.clear();
}

void Registry::setToolValidator(Server::ToolValidator validator)
{
    auto entry = validator ? std::make_shared<const Server::ToolValidator>(std::move(validator)) : nullptr;
    const MutexLock lock(mutex_);
    validator_ = std::move(entry);
}

void Registry::setInfo(Info info)
{
    const MutexLock lock(mutex_);
    info_ = std::move(info);
}

std::string Registry::toolNameOf(const std::string& name) const
{
    const MutexLock lock(mutex_);
    const auto alias = aliases_.find(name);
    return alias == aliases_.end() ? name : alias->second;
}

tl::expected<void, std::string> Registry::validate(const std::string& toolName) const
{
    std::shared_ptr<const Server::ToolValidator> validator;
    {
        const MutexLock lock(mutex_);
        validator = validator_;
    }
    return validator ? (*validator)(toolName) : tl::expected<void, std::string>();
}

std::shared_ptr<const Tool> Registry::findTool(const std::string& name) const
{
    const MutexLock lock(mutex_);
    return find(tools_, name);
}

std::shared_ptr<const Resource> Registry::findResource(const std::string& uri) const
{
    const MutexLock lock(mutex_);
    return find(resources_, uri);
}

std::shared_ptr<const Prompt> Registry::findPrompt(const std::string& name) const
{
    const MutexLock lock(mutex_);
    return find(prompts_, name);
}

Registry::Table<Tool> Registry::tools() const
{
    const MutexLock lock(mutex_);
    return tools_;
}

Registry::Table<Resource> Registry::resources() const
{
    const MutexLock lock(mutex_);
    return resources_;
}

Registry::Table<ResourceTemplate> Registry::resourceTemplates() const
{
    const MutexLock lock(mutex_);
    return resourceTemplates_;
}

Registry::Table<Prompt> Registry::prompts() const
{
    const MutexLock lock(mutex_);
    return prompts_;
}

Registry::Info Registry::info() const
{
    const MutexLock lock(mutex_);
    return info_;
}

} // namespace VX::Mcp
