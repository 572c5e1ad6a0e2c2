#include <VXMesh/StringConvert.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <set>

namespace VX
{

namespace
{

// Sorted; every format that users of such a program open or save.
constexpr std::array<std::string_view, 32> wellKnownKinds = {
    "3mf", "asc", "bmp", "csv", "ctm", "dcm", "dxf", "e57", "glb",  "gltf", "jpeg", "jpg", "json", "las", "laz", "nii",
    "obj", "off", "pcd", "ply", "png", "pts", "ptx", "raw", "step", "stl",  "stp",  "svg", "tif",  "vdb", "vxu", "xyz"};

std::string kindOf(const std::filesystem::path& path)
{
    std::string extension = toLower(utf8string(path.extension()));
    if (extension.empty())
        return {};
    extension.erase(0, 1);
    if (!std::binary_search(wellKnownKinds.begin(), wellKnownKinds.end(), extension))
        return {};
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return extension + ' ';
}

} // namespace

std::string toLower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

std::string trimLeft(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    return std::string(text);
}

std::string utf8string(const std::filesystem::path& path)
{
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}

std::filesystem::path pathFromUtf8(std::string_view text)
{
    return {std::u8string(text.begin(), text.end())};
}

std::string commonFilesName(const std::vector<std::filesystem::path>& paths)
{
    std::set<std::string> kinds;
    std::transform(paths.begin(), paths.end(), std::inserter(kinds, kinds.end()), kindOf);
    const std::string kind = kinds.size() == 1 ? *kinds.begin() : std::string();
    if (paths.size() == 1)
        return kind + "file";
    return std::to_string(paths.size()) + ' ' + kind + "files";
}

} // namespace VX
