#include "ThemeFile.h"

#include <VXMesh/Json.h>
#include <VXMesh/StringConvert.h>
#include <VXMesh/UserFolders.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <system_error>

namespace VX
{

namespace
{

constexpr const char* extension = ".json";

/// Far more than a theme takes.
constexpr std::uintmax_t largestFile = std::uintmax_t{64} * 1024;

std::optional<unsigned> parseColor(const Json::Value& value)
{
    constexpr std::size_t length = 7;
    if (!value.isString())
        return std::nullopt;
    const std::string text = value.asString();
    if (text.size() != length || text[0] != '#')
        return std::nullopt;
    unsigned rgb = 0;
    const char* const end = text.data() + length;
    const auto [last, error] = std::from_chars(text.data() + 1, end, rgb, 16);
    return error == std::errc() && last == end ? std::optional(rgb) : std::nullopt;
}

/// What is wrong with `root`; empty where all of it went into `theme`.
std::string readBase(const Json::Value& root, ThemeFile& theme)
{
    const Json::Value& base = root["base"];
    if (base.isNull())
        return {};
    if (base == Json::Value("light"))
    {
        theme.base = ColorTheme::Preset::Light;
        theme.palette = Palette::light();
        return {};
    }
    return base == Json::Value("dark") ? "" : R"("base" is neither "dark" nor "light".)";
}

std::string readColors(const Json::Value& root, ThemeFile& theme)
{
    const Json::Value& colors = root["colors"];
    if (!colors.isObject())
        return R"("colors" is missing or no object.)";
    for (const std::string& name : colors.getMemberNames())
    {
        const std::optional<ThemeRole> role = Palette::roleOf(name);
        if (!role)
            return fmt::format(R"(there is no color "{}".)", name);
        const std::optional<unsigned> rgb = parseColor(colors[name]);
        if (!rgb)
            return fmt::format(R"(the color "{}" is not of the form "#RRGGBB".)", name);
        theme.palette.set(*role, *rgb);
    }
    return {};
}

std::string readInto(const std::filesystem::path& path, ThemeFile& theme)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return "there is no such file in the folder of the themes.";
    if (std::filesystem::file_size(path, error) > largestFile || error)
        return "its file is too large.";
    const auto json = deserializeJsonValue(path);
    if (!json)
        return json.error();
    const Json::Value& root = *json;
    if (!root.isObject())
        return "its file holds no JSON object.";
    std::string problem = readBase(root, theme);
    return problem.empty() ? readColors(root, theme) : problem;
}

} // namespace

std::filesystem::path ThemeFile::folder()
{
    return getUserConfigDir() / "themes";
}

std::vector<std::string> ThemeFile::findAll()
{
    std::vector<std::string> names;
    std::error_code error;
    std::filesystem::directory_iterator entry(folder(), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error))
    {
        std::error_code ignored;
        if (entry->path().extension() == extension && entry->is_regular_file(ignored))
            names.push_back(utf8string(entry->path().stem()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

tl::expected<ThemeFile, std::string> ThemeFile::read(const std::string& name)
{
    const std::filesystem::path file = pathFromUtf8(name + extension);
    ThemeFile theme;
    // A name that leads out of the folder is no theme's.
    const std::string problem = file.has_parent_path() ? "there is no such file in the folder of the themes."
                                                       : readInto(folder() / file, theme);
    if (!problem.empty())
        return tl::unexpected(fmt::format(R"(Cannot use the theme "{}": {})", name, problem));
    return theme;
}

} // namespace VX
