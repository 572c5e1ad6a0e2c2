#include <fcntl.h>
#include <net/BodyFile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace VX
{

namespace
{

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

} // namespace

BodyFileWriter::~BodyFileWriter()
{
    if (fd_ < 0)
        return;
    ::close(fd_);
    ::unlink(temporary_.c_str());
}

std::error_code BodyFileWriter::open(const std::filesystem::path& file)
{
    temporary_ = (file.parent_path() / ".upload-XXXXXX").string();
    fd_ = ::mkostemp(temporary_.data(), O_CLOEXEC);
    if (fd_ < 0)
        return lastError();
    file_ = file;
    return {};
}

std::error_code BodyFileWriter::write(std::span<const char> bytes)
{
    while (!bytes.empty())
    {
        const ssize_t written = ::write(fd_, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            return lastError();
        if (written > 0)
            bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return {};
}

std::error_code BodyFileWriter::commit()
{
    // A network file system reports a full disk only when the file is closed.
    if (::close(std::exchange(fd_, -1)) != 0 || ::rename(temporary_.c_str(), file_.c_str()) != 0)
    {
        const auto error = lastError();
        ::unlink(temporary_.c_str());
        return error;
    }
    return {};
}

BodyFileReader::~BodyFileReader()
{
    if (fd_ >= 0)
        ::close(fd_);
}

std::error_code BodyFileReader::open(const std::filesystem::path& file)
{
    // Without O_NONBLOCK a named pipe would hold the thread until somebody writes to it.
    fd_ = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status{};
    if (fd_ < 0 || ::fstat(fd_, &status) != 0)
        return lastError();
    if (!S_ISREG(status.st_mode))
        return std::make_error_code(std::errc::invalid_argument);
    size_ = static_cast<std::uint64_t>(status.st_size);
    return {};
}

std::size_t BodyFileReader::read(std::span<char> out)
{
    for (;;)
    {
        const ssize_t got = ::read(fd_, out.data(), out.size());
        if (got >= 0)
            return static_cast<std::size_t>(got);
        if (errno != EINTR)
            return 0;
    }
}

} // namespace VX
