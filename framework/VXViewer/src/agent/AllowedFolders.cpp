#include "AllowedFolders.h"

#include <VXMesh/Config.h>
#include <VXMesh/StringConvert.h>
#include <VXMesh/UserHome.h>

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <system_error>

namespace VX
{

namespace
{

constexpr const char* settingsKey = "agentFolders";

std::optional<std::filesystem::path> withoutLinks(const std::filesystem::path& path)
{
    std::error_code error;
    std::filesystem::path found = std::filesystem::canonical(path, error);
    return error ? std::nullopt : std::optional(std::move(found));
}

tl::expected<std::filesystem::path, std::string> absolutePath(const std::string& text)
{
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; };
    if (std::ranges::any_of(text, isControl))
        return tl::unexpected(std::string("A path must not have line ends or other control characters in it."));
    if (text == "~")
        return getUserHomeDir();
    if (text.starts_with("~/"))
        return getUserHomeDir() / pathFromUtf8(text.substr(2));
    std::filesystem::path path = pathFromUtf8(text);
    if (!path.is_absolute())
        return tl::unexpected(fmt::format(
            "\"{}\" is not an absolute path. Write it from the root, or with \"~/\" for the home folder.", text));
    return path;
}

/// The parts of `path` below `folder`, none for the folder itself; nothing where it is elsewhere.
std::optional<std::vector<std::string>> partsBelow(const std::filesystem::path& path,
                                                   const std::filesystem::path& folder)
{
    const auto [inFolder, inPath] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
    if (inFolder != folder.end())
        return std::nullopt;
    std::vector<std::string> parts;
    std::transform(inPath, path.end(), std::back_inserter(parts), [](const auto& part) { return part.string(); });
    return parts;
}

bool isHidden(const std::string& name)
{
    return name.starts_with('.');
}

} // namespace

AllowedFolders::AllowedFolders(const std::vector<std::filesystem::path>& folders)
{
    for (const std::filesystem::path& folder : folders)
    {
        if (auto found = withoutLinks(folder))
            folders_.push_back(std::move(*found));
    }
}

std::vector<std::filesystem::path> AllowedFolders::settings()
{
    std::vector<std::filesystem::path> folders;
    const Json::Value stored = Config::instance().getJson(settingsKey, Json::Value(Json::arrayValue));
    if (stored.isArray())
    {
        for (const Json::Value& folder : stored)
        {
            if (folder.isString() && pathFromUtf8(folder.asString()).is_absolute())
                folders.push_back(pathFromUtf8(folder.asString()));
        }
    }
    return folders;
}

void AllowedFolders::setSettings(const std::vector<std::filesystem::path>& folders)
{
    Json::Value stored(Json::arrayValue);
    for (const std::filesystem::path& folder : folders)
        stored.append(utf8string(folder));
    Config::instance().setJson(settingsKey, stored);
}

AllowedFolders AllowedFolders::ofSettings()
{
    std::vector<std::filesystem::path> folders = settings();
    if (folders.empty())
        folders.push_back(getUserHomeDir());
    return AllowedFolders(folders);
}

tl::expected<std::filesystem::path, std::string> AllowedFolders::forReading(const std::string& text) const
{
    const auto path = absolutePath(text);
    if (!path)
        return tl::unexpected(path.error());
    // Nothing is told of what is elsewhere, not even whether it is there.
    std::error_code error;
    const std::filesystem::path named = std::filesystem::weakly_canonical(*path, error);
    auto allowed = checked_(error ? path->lexically_normal() : named, text);
    if (!allowed)
        return allowed;
    auto found = withoutLinks(*path);
    if (!found)
        return tl::unexpected(fmt::format("There is no file or folder \"{}\". Check the path.", text));
    return checked_(*found, text);
}

tl::expected<std::filesystem::path, std::string> AllowedFolders::forWriting(const std::string& text) const
{
    const auto path = absolutePath(text);
    if (!path)
        return tl::unexpected(path.error());
    const std::filesystem::path name = path->filename();
    const auto folder = withoutLinks(path->parent_path());
    if (name.empty() || name == "." || name == "..")
        return tl::unexpected(fmt::format("\"{}\" names no file. Add a name with an extension.", text));
    if (folder)
        return checked_(*folder / name, text);
    auto allowed = checked_(path->lexically_normal(), text);
    if (!allowed)
        return allowed;
    return tl::unexpected(fmt::format("There is no folder for \"{}\". Choose one that exists.", text));
}

tl::expected<std::filesystem::path, std::string> AllowedFolders::checked_(const std::filesystem::path& path,
                                                                          const std::string& text) const
{
    bool hidden = false;
    for (const std::filesystem::path& folder : folders_)
    {
        const auto parts = partsBelow(path, folder);
        if (!parts)
            continue;
        if (std::ranges::none_of(*parts, isHidden))
            return path;
        hidden = true;
    }
    if (hidden)
        return tl::unexpected(fmt::format(
            "\"{}\" is hidden or in a hidden folder, which agents may not use. Choose another place.", text));
    std::string names;
    for (const std::filesystem::path& folder : folders_)
        names += (names.empty() ? "" : ", ") + utf8string(folder);
    return tl::unexpected(
        fmt::format("\"{}\" is in no folder that agents may use, which are: {}. Use one of these, or ask "
                    "the user to add the folder in the settings, tab Application, section Agents.",
                    text, names.empty() ? "none" : names));
}

} // namespace VX
