#include "FileDescriptor_linux.h"

#include <VXMesh/AtomicFile.h>
#include <VXMesh/FileError.h>

#include <fmt/format.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <random>
#include <utility>

namespace VX
{

namespace
{

tl::unexpected<std::string> writeError(const std::filesystem::path& target, int code)
{
    return tl::unexpected(fileErrorText("write", target, std::error_code(code, std::generic_category())));
}

std::filesystem::path folderOf(const std::filesystem::path& target)
{
    return target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
}

// A device, pipe or socket would give way to a file of its name.
bool isSpecial(const std::filesystem::path& target)
{
    std::error_code unknown;
    return std::filesystem::is_other(std::filesystem::symlink_status(target, unknown));
}

// Zero or the error number.
int renameToNew(const std::filesystem::path& from, const std::filesystem::path& to)
{
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    // Some file systems do not know the flag; a second name is never given in place of another file either.
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    if (::link(from.c_str(), to.c_str()) != 0)
        return errno;
    ::unlink(from.c_str());
    return 0;
}

// Zero or the error number.
int renameOver(const std::filesystem::path& from, const std::filesystem::path& to)
{
    return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

// Zero or the error number.
int writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty())
    {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

} // namespace

tl::expected<AtomicFile, std::string> AtomicFile::create(const std::filesystem::path& target,
                                                         std::filesystem::perms mode, Existing existing)
{
    if (isSpecial(target))
        return writeError(target, EOPNOTSUPP);
    // Not made of the target's name, which may be as long as names can be.
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt)
    {
        std::filesystem::path path = folderOf(target) / fmt::format(".vx-{:08x}{:08x}.tmp", random(), random());
        const FileDescriptor file(
            ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, static_cast<mode_t>(mode)));
        if (file.isOpen())
            return AtomicFile(target, std::move(path), existing);
        if (errno != EEXIST)
            return writeError(target, errno);
    }
    return writeError(target, EEXIST);
}

AtomicFile::AtomicFile(std::filesystem::path target, std::filesystem::path temporaryPath, Existing existing)
    : target_(std::move(target))
    , temporaryPath_(std::move(temporaryPath))
    , existing_(existing)
{
}

AtomicFile::AtomicFile(AtomicFile&& other) noexcept
    : target_(std::move(other.target_))
    , temporaryPath_(std::exchange(other.temporaryPath_, {}))
    , existing_(other.existing_)
{
}

AtomicFile& AtomicFile::operator=(AtomicFile&& other) noexcept
{
    std::swap(target_, other.target_);
    std::swap(temporaryPath_, other.temporaryPath_);
    std::swap(existing_, other.existing_);
    return *this;
}

AtomicFile::~AtomicFile()
{
    discard_();
}

void AtomicFile::discard_() noexcept
{
    if (!temporaryPath_.empty())
        ::unlink(temporaryPath_.c_str());
    temporaryPath_.clear();
}

tl::expected<void, std::string> AtomicFile::commit(Flush flush)
{
    int error = 0;
    if (flush == Flush::Yes)
    {
        const FileDescriptor file(::open(temporaryPath_.c_str(), O_RDONLY | O_CLOEXEC));
        if (!file.isOpen() || ::fsync(file.get()) != 0)
            error = errno;
    }
    if (error == 0)
        error =
            existing_ == Existing::Keep ? renameToNew(temporaryPath_, target_) : renameOver(temporaryPath_, target_);
    if (error != 0)
    {
        discard_();
        return writeError(target_, error);
    }
    temporaryPath_.clear();
    if (flush == Flush::Yes)
    {
        // The file is complete under its name; that the name survives a power failure too is not worth an error.
        const FileDescriptor folder(::open(folderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (folder.isOpen())
            ::fsync(folder.get());
    }
    return {};
}

tl::expected<void, std::string> writeFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                                                    std::filesystem::perms mode)
{
    auto file = AtomicFile::create(path, mode);
    if (!file)
        return tl::unexpected(file.error());
    {
        const FileDescriptor descriptor(::open(file->temporaryPath().c_str(), O_WRONLY | O_CLOEXEC));
        const int error = descriptor.isOpen() ? writeAll(descriptor.get(), bytes) : errno;
        if (error != 0)
            return writeError(path, error);
    }
    return file->commit();
}

} // namespace VX
