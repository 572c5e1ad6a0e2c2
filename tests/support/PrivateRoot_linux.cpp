#include "PrivateRoot.h"

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <utility>

namespace VX::Test
{

namespace
{

namespace fs = std::filesystem;

/// Whether this process has its private root.
bool& entered()
{
    static bool value = false;
    return value;
}

bool writeProcFile(const char* file, const std::string& text)
{
    std::ofstream stream(file);
    stream << text << std::flush;
    return stream.good();
}

/// Mounts of one's own: root may have them, and in a user namespace of its own everybody is root.
bool enterNamespaces()
{
    if (::unshare(CLONE_NEWNS) == 0)
        return true;
    const std::string uid = std::to_string(::geteuid());
    const std::string gid = std::to_string(::getegid());
    return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && writeProcFile("/proc/self/setgroups", "deny") &&
           writeProcFile("/proc/self/uid_map", "0 " + uid + " 1") &&
           writeProcFile("/proc/self/gid_map", "0 " + gid + " 1");
}

bool showEntry(const fs::directory_entry& entry, const fs::path& target)
{
    if (entry.is_symlink())
    {
        fs::copy_symlink(entry.path(), target);
        return true;
    }
    if (!entry.is_directory())
        return true;
    fs::create_directory(target);
    return ::mount(entry.path().c_str(), target.c_str(), nullptr, MS_BIND | MS_REC, nullptr) == 0;
}

bool buildRoot(const fs::path& hidden, const fs::path& root)
{
    if (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", root.c_str(), "tmpfs", 0, "mode=755") != 0)
        return false;
    for (const auto& entry : fs::directory_iterator("/"))
    {
        if (entry.path().filename() != hidden && !showEntry(entry, root / entry.path().filename()))
            return false;
    }
    const fs::path here = fs::current_path();
    return ::chroot(root.c_str()) == 0 && ::chdir(here.c_str()) == 0;
}

} // namespace

bool enterPrivateRoot(const fs::path& hidden, const fs::path& mountPoint)
{
    if (!entered())
    {
        std::error_code error;
        fs::create_directories(mountPoint, error);
        entered() = !error && enterNamespaces() && buildRoot(hidden, mountPoint);
    }
    return entered();
}

MountScope::MountScope(fs::path folder, bool small, bool active)
    : folder_(std::move(folder))
    , small_(small)
    , active_(active)
{
}

MountScope MountScope::makeSmall(const fs::path& folder, std::size_t bytes)
{
    const std::string options = "mode=1777,size=" + std::to_string(bytes);
    return {folder, true, entered() && ::mount("tmpfs", folder.c_str(), "tmpfs", 0, options.c_str()) == 0};
}

MountScope MountScope::makeReadOnly(const fs::path& folder)
{
    return {folder, false,
            entered() && ::mount("none", folder.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) == 0};
}

MountScope::~MountScope()
{
    if (active_ && small_)
        ::umount2(folder_.c_str(), MNT_DETACH);
    else if (active_)
        ::mount("none", folder_.c_str(), nullptr, MS_REMOUNT | MS_BIND, nullptr);
}

} // namespace VX::Test
