#include "ConversionLock.h"
#include <quorvix/converter/ServiceFolder.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

namespace VX
{

namespace
{

constexpr std::chrono::milliseconds retryPause{100};

tl::unexpected<std::string> failed(int error)
{
    return tl::unexpected("errno " + std::to_string(error));
}

/// Waits for the lock. @return what keeps it from being taken, if not the patience of the caller
tl::expected<void, std::string> lockFile(int descriptor, const ProgressCallback& progress)
{
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0)
    {
        if (errno != EWOULDBLOCK && errno != EINTR)
            return failed(errno);
        if (!reportProgress(progress, 0.0F))
            return tl::unexpected(operationCanceledText());
        std::this_thread::sleep_for(retryPause);
    }
    return {};
}

/// Opens the lock file, which another user may have created. Nobody reads or writes it, and a lock needs no right to
/// write. Systems refuse O_CREAT for another's file in a folder that everybody may write to, so that it is created and
/// opened in turn. Links are not followed and pipes not waited for: anybody may put one there.
/// @return -1 with errno on failure
int openLockFile(const char* file)
{
    while (true)
    {
        int descriptor = ::open(file, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (descriptor >= 0 || errno != ENOENT)
            return descriptor;
        constexpr mode_t everybody = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
        descriptor = ::open(file, O_RDONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, everybody);
        if (descriptor >= 0)
        {
            static_cast<void>(::fchmod(descriptor, everybody)); // open minds the umask
            return descriptor;
        }
        if (errno != EEXIST)
            return descriptor;
    }
}

/// The last owner may have removed the file while it was waited for; the right then hangs on a new one.
bool isStillThere(const char* file, int descriptor)
{
    struct stat locked{};
    struct stat named{};
    return ::fstat(descriptor, &locked) == 0 && ::lstat(file, &named) == 0 && locked.st_dev == named.st_dev &&
           locked.st_ino == named.st_ino;
}

} // namespace

tl::expected<ConversionLock, std::string> ConversionLock::acquire(const std::filesystem::path& input,
                                                                  const ProgressCallback& progress)
{
    if (const auto error = ConverterService::createServiceOutputDirectory())
        return failed(error.value());
    const std::filesystem::path file =
        ConverterService::serviceOutputDirectory() / input.filename().replace_extension(".lock");
    while (true)
    {
        const int descriptor = openLockFile(file.c_str());
        if (descriptor < 0)
            return failed(errno);
        auto locked = lockFile(descriptor, progress);
        if (locked && isStillThere(file.c_str(), descriptor))
            return ConversionLock(file, descriptor);
        ::close(descriptor);
        if (!locked)
            return tl::unexpected(std::move(locked.error()));
    }
}

ConversionLock::ConversionLock(std::filesystem::path file, int descriptor)
    : file_(std::move(file))
    , descriptor_(descriptor)
{
}

ConversionLock::ConversionLock(ConversionLock&& other) noexcept
    : file_(std::move(other.file_))
    , descriptor_(std::exchange(other.descriptor_, -1))
{
}

ConversionLock& ConversionLock::operator=(ConversionLock&& other) noexcept
{
    if (this != &other)
    {
        release_();
        file_ = std::move(other.file_);
        descriptor_ = std::exchange(other.descriptor_, -1);
    }
    return *this;
}

ConversionLock::~ConversionLock()
{
    release_();
}

void ConversionLock::release_() noexcept
{
    if (descriptor_ < 0)
        return;
    // Removed while it is locked, so that nobody gets a lock on a file that is about to go without noticing it. One
    // that another user owns stays.
    ::unlink(file_.c_str());
    ::close(std::exchange(descriptor_, -1));
}

} // namespace VX
