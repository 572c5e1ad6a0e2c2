#include "DataFolder.h"

#include <fmt/format.h>

#include <system_error>
#include <utility>

namespace VX
{

tl::expected<DataFolder, std::string> DataFolder::open(const std::filesystem::path& folder)
{
    // A work folder that is a relative path would be another one for the conversion's process.
    std::error_code error;
    DataFolder data(std::filesystem::absolute(folder, error));
    if (!error && std::filesystem::create_directories(data.folder_, error) && !error)
        std::filesystem::permissions(data.folder_, std::filesystem::perms::owner_all, error);
    if (!error)
        std::filesystem::create_directories(data.work(), error);
    if (error)
        return tl::unexpected(fmt::format("The data folder cannot be created: {}.", error.message()));
    return data;
}

DataFolder::DataFolder(std::filesystem::path folder)
    : folder_(std::move(folder))
{
}

} // namespace VX
