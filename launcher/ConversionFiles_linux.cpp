#include "launcher/ConversionFiles.h"

#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <system_error>
#include <vector>

namespace VX
{

namespace
{

/// Longer than any conversion takes.
constexpr std::time_t keptSeconds = 86400;

/// Whether it is a folder of this user that nothing was added to or removed from for a day. Nobody else can put
/// something in the place of such a one while it is cleared.
bool isOwnOldFolder(const std::filesystem::path& path)
{
    struct stat status{};
    return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
           status.st_mtime < std::time(nullptr) - keptSeconds;
}

std::vector<std::filesystem::path> ownOldFolders(const std::filesystem::path& outputDirectory)
{
    std::vector<std::filesystem::path> folders;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(outputDirectory, error), end; !error && entry != end;
         entry.increment(error))
    {
        if (isOwnOldFolder(entry->path()))
            folders.push_back(entry->path());
    }
    return folders;
}

} // namespace

void removeConversionFiles(const std::filesystem::path& outputDirectory, const std::filesystem::path& input)
{
    std::error_code ignored;
    for (const char* extension : {".input.zip", ".vxu"})
        std::filesystem::remove(outputDirectory / input.filename().replace_extension(extension), ignored);
    for (const auto& folder : ownOldFolders(outputDirectory))
    {
        std::filesystem::remove(folder / "input", ignored);
        // A folder that holds anything else is none of a conversion, and stays.
        std::filesystem::remove(folder, ignored);
    }
}

} // namespace VX
