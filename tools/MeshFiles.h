#pragma once

#include <VXMesh/ObjectFile.h>

#include <cstdio>
#include <filesystem>
#include <optional>

namespace VX
{

/// The one argument of a program that fills a folder; nothing, with `usage` on standard error, where it has others.
inline std::optional<std::filesystem::path> folderArgument(int argc, char** argv, const char* usage)
{
    if (argc == 2 && argv[1][0] != '-')
        return argv[1];
    std::fputs(usage, stderr);
    return {};
}

/// @return false, with the reason on standard error, where it failed
inline bool saveMesh(const Object& object, const std::filesystem::path& path)
{
    const auto saved = saveObjectToFile(object, path, {});
    if (!saved)
        std::fprintf(stderr, "%s\n", saved.error().c_str());
    return saved.has_value();
}

} // namespace VX
