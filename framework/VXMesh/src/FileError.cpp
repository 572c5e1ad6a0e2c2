#include "StartLower.h"

#include <VXMesh/FileError.h>
#include <VXMesh/StringConvert.h>

#include <fmt/format.h>

namespace VX
{

std::string fileErrorText(std::string_view action, const std::filesystem::path& path, const std::error_code& error)
{
    return fileErrorText(action, path, startLower(error.message()) + '.');
}

std::string fileErrorText(std::string_view action, const std::filesystem::path& path, std::string_view reason)
{
    // The name of "/folder/" is empty: take the folder's.
    const std::filesystem::path name = path.has_filename() ? path.filename() : path.parent_path().filename();
    return fmt::format("Cannot {} \"{}\": {}", action, utf8string(name), reason);
}

} // namespace VX
