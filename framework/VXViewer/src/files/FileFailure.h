#pragma once

#include <VXMesh/FileError.h>

#include <fmt/format.h>
#include <spdlog/spdlog.h>

#include <exception>
#include <filesystem>
#include <new>
#include <string>
#include <string_view>

namespace VX
{

/// One sentence for the user about a file operation that an exception ended, which the log gets too.
/// @param action  as in `fileErrorText`
/// @threads any
inline std::string fileFailureText(std::string_view action, const std::filesystem::path& path,
                                   const std::exception& exception)
{
    spdlog::error("The program could not {} a file: {}", action, exception.what());
    if (dynamic_cast<const std::bad_alloc*>(&exception))
        return fileErrorText(action, path, "there is not enough memory.");
    return fileErrorText(action, path, fmt::format("an error came up that was not foreseen ({}).", exception.what()));
}

} // namespace VX
