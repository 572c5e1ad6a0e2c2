#include <quorvix/converter/ServiceFolder.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <vector>

namespace VX::ConverterService
{

namespace
{

constexpr std::size_t copyBufferSize = std::size_t{1} << 18U;

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

/// An open file that is closed with this object.
class OpenFile
{
public:
    explicit OpenFile(int descriptor)
        : descriptor_(descriptor)
    {
    }

    ~OpenFile()
    {
        if (isOpen())
            ::close(descriptor_);
    }

    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    [[nodiscard]] int get() const { return descriptor_; }

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

    /// Some file systems report only now that the bytes found no room.
    [[nodiscard]] std::error_code close()
    {
        if (!isOpen())
            return {};
        const int closed = ::close(descriptor_);
        descriptor_ = -1;
        return closed == 0 ? std::error_code() : lastError();
    }

private:
    int descriptor_;
};

std::error_code writeAll(int target, const char* bytes, std::size_t count)
{
    while (count > 0)
    {
        const ssize_t written = ::write(target, bytes, count);
        if (written < 0 && errno != EINTR)
            return lastError();
        if (written > 0)
        {
            bytes += written;
            count -= static_cast<std::size_t>(written);
        }
    }
    return {};
}

std::error_code copyBytes(int source, int target)
{
    std::vector<char> buffer(copyBufferSize);
    while (true)
    {
        const ssize_t count = ::read(source, buffer.data(), buffer.size());
        if (count == 0)
            return {};
        if (count < 0)
        {
            if (errno != EINTR)
                return lastError();
            continue;
        }
        if (const auto error = writeAll(target, buffer.data(), static_cast<std::size_t>(count)))
            return error;
    }
}

/// Only a regular file has an end; a pipe or a device would be waited for.
std::error_code requireRegularFile(int descriptor)
{
    struct stat status{};
    if (::fstat(descriptor, &status) != 0)
        return lastError();
    if (S_ISREG(status.st_mode))
        return {};
    return std::make_error_code(S_ISDIR(status.st_mode) ? std::errc::is_a_directory : std::errc::invalid_argument);
}

} // namespace

const std::filesystem::path& serviceOutputDirectory()
{
    static const std::filesystem::path directory("/.service_output_files/");
    return directory;
}

std::error_code createServiceOutputDirectory()
{
    constexpr mode_t sharedMode = S_ISVTX | S_IRWXU | S_IRWXG | S_IRWXO;
    const char* const directory = serviceOutputDirectory().c_str();
    if (::mkdir(directory, sharedMode) == 0)
        return ::chmod(directory, sharedMode) == 0 ? std::error_code() : lastError(); // mkdir minds the umask
    const std::error_code failed = lastError();
    std::error_code ignored;
    return std::filesystem::is_directory(serviceOutputDirectory(), ignored) ? std::error_code() : failed;
}

std::error_code createPrivateFolder(const std::filesystem::path& folder)
{
    return ::mkdir(folder.c_str(), S_IRWXU) == 0 ? std::error_code() : lastError();
}

std::error_code copyPrivately(const std::filesystem::path& source, const std::filesystem::path& target)
{
    const OpenFile from(::open(source.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!from.isOpen())
        return lastError();
    if (const auto error = requireRegularFile(from.get()))
        return error;
    constexpr mode_t privateMode = S_IRUSR | S_IWUSR;
    OpenFile to(::open(target.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, privateMode));
    if (!to.isOpen() || ::fchmod(to.get(), privateMode) != 0)
        return lastError();
    std::error_code error = copyBytes(from.get(), to.get());
    if (const auto closed = to.close(); !error)
        error = closed;
    if (error)
        ::unlink(target.c_str());
    return error;
}

} // namespace VX::ConverterService
