#include "ApplicationName.h"
#include "Environment.h"
#include "HomeFolder.h"

#include <VXMesh/FileError.h>
#include <VXMesh/StringConvert.h>
#include <VXMesh/UserFolders.h>
#include <VXMesh/UserHome.h>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace VX
{

namespace
{

std::filesystem::path homeOfEnvironment()
{
    return environmentVariable("HOME");
}

std::filesystem::path homeOfPasswordFile()
{
    std::array<char, 4096> buffer = {};
    passwd entry = {};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found || !entry.pw_dir)
        return {};
    return entry.pw_dir;
}

// A relative path in such a variable is to be ignored.
std::filesystem::path baseFolder(const char* variable, const char* belowHome)
{
    std::filesystem::path base = environmentVariable(variable);
    return base.is_absolute() ? base : getUserHomeDir() / belowHome;
}

} // namespace

std::filesystem::path getUserHomeDir()
{
    return homeFolder({homeOfEnvironment, homeOfPasswordFile});
}

std::filesystem::path getUserConfigDir()
{
    return baseFolder("XDG_CONFIG_HOME", ".config") / pathFromUtf8(applicationName());
}

std::filesystem::path getUserDataDir()
{
    return baseFolder("XDG_DATA_HOME", ".local/share") / pathFromUtf8(applicationName());
}

std::filesystem::path getUserStateDir()
{
    return baseFolder("XDG_STATE_HOME", ".local/state") / pathFromUtf8(applicationName());
}

std::filesystem::path getUserRuntimeDir()
{
    const std::filesystem::path base = environmentVariable("XDG_RUNTIME_DIR");
    std::error_code error;
    return base.is_absolute() && std::filesystem::is_directory(base, error)
               ? base / pathFromUtf8(toLower(applicationName()))
               : getUserStateDir() / "run";
}

tl::expected<void, std::string> createUserFolder(const std::filesystem::path& folder)
{
    if (::mkdir(folder.c_str(), S_IRWXU) == 0)
        return {};
    int code = errno;
    if (code == ENOENT && folder.has_parent_path() && folder.parent_path() != folder)
    {
        if (auto created = createUserFolder(folder.parent_path()); !created)
            return created;
        code = ::mkdir(folder.c_str(), S_IRWXU) == 0 ? 0 : errno;
    }
    std::error_code ignored;
    if (code != 0 && !std::filesystem::is_directory(folder, ignored))
        return tl::unexpected(fileErrorText("create", folder, std::error_code(code, std::generic_category())));
    return {};
}

} // namespace VX
