#pragma once

#include <VXMcp/Server.h>

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace VX::Mcp
{

/// What the server offers. Everything may change while calls are under way: they keep what they have looked up.
/// @threads any
class Registry
{
public:
    template <typename T>
    using Table = std::map<std::string, std::shared_ptr<const T>>;

    struct Info
    {
        std::string name = "VXMcp";
        std::string version = "1";
        std::string instructions{};
    };

    void addTool(Tool tool);
    void removeTool(const std::string& name);
    void addResource(Resource resource);
    void addResourceTemplate(ResourceTemplate resourceTemplate);
    void addPrompt(Prompt prompt);
    void addAlias(std::string alias, std::string toolName);
    void clear(); ///< all but the validator and the info
    void setToolValidator(Server::ToolValidator validator);
    void setInfo(Info info);

    /// The name of the tool that calls of `name` mean.
    [[nodiscard]] std::string toolNameOf(const std::string& name) const;

    /// Asks the validator, outside all locks.
    [[nodiscard]] tl::expected<void, std::string> validate(const std::string& toolName) const;

    /// @return null where there is none
    [[nodiscard]] std::shared_ptr<const Tool> findTool(const std::string& name) const;
    [[nodiscard]] std::shared_ptr<const Resource> findResource(const std::string& uri) const;
    [[nodiscard]] std::shared_ptr<const Prompt> findPrompt(const std::string& name) const;

    /// In the order of their names.
    [[nodiscard]] Table<Tool> tools() const;
    [[nodiscard]] Table<Resource> resources() const;
    [[nodiscard]] Table<ResourceTemplate> resourceTemplates() const;
    [[nodiscard]] Table<Prompt> prompts() const;

    [[nodiscard]] Info info() const;

private:
    mutable Mutex mutex_;
    Table<Tool> tools_ VX_GUARDED_BY(mutex_);
    Table<Resource> resources_ VX_GUARDED_BY(mutex_);
    Table<ResourceTemplate> resourceTemplates_ VX_GUARDED_BY(mutex_);
    Table<Prompt> prompts_ VX_GUARDED_BY(mutex_);
    std::map<std::string, std::string> aliases_ VX_GUARDED_BY(mutex_);
    std::shared_ptr<const Server::ToolValidator> validator_ VX_GUARDED_BY(mutex_);
    Info info_ VX_GUARDED_BY(mutex_);
};

} // namespace VX::Mcp
