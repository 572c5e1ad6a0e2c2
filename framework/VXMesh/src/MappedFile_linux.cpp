#include "FileDescriptor_linux.h"

#include <VXMesh/FileError.h>
#include <VXMesh/MappedFile.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace VX
{

namespace
{

std::string openError(const std::filesystem::path& path, int code)
{
    return fileErrorText("open", path, std::error_code(code, std::generic_category()));
}

} // namespace

tl::expected<MappedFile, std::string> MappedFile::open(const std::filesystem::path& path)
{
    // Without O_NONBLOCK a named pipe would wait for its writer.
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    struct stat info = {};
    if (!file.isOpen() || ::fstat(file.get(), &info) != 0)
        return tl::unexpected(openError(path, errno));
    if (S_ISDIR(info.st_mode))
        return tl::unexpected(openError(path, EISDIR));
    if (!S_ISREG(info.st_mode))
        return tl::unexpected(fileErrorText("open", path, "it is not a regular file."));

    MappedFile mapped;
    const auto size = static_cast<std::size_t>(info.st_size);
    if (size == 0)
        return mapped;
    const void* address = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.get(), 0);
    if (address == MAP_FAILED)
        return tl::unexpected(openError(path, errno));
    mapped.bytes_ = {static_cast<const std::byte*>(address), size};
    return mapped;
}

void MappedFile::release(std::size_t offset, std::size_t size) const
{
    if (offset >= bytes_.size())
        return;
    static const auto pageSize = static_cast<std::size_t>(::sysconf(_SC_PAGE_SIZE));
    const std::size_t first = (offset + pageSize - 1) / pageSize * pageSize;
    std::size_t last = offset + std::min(size, bytes_.size() - offset);
    // The last page of the file goes too when its last byte does.
    if (last != bytes_.size())
        last = last / pageSize * pageSize;
    if (first < last)
        ::madvise(const_cast<std::byte*>(bytes_.data()) + first, last - first, MADV_DONTNEED);
}

MappedFile::MappedFile(MappedFile&& other) noexcept
    : bytes_(std::exchange(other.bytes_, {}))
{
}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept
{
    std::swap(bytes_, other.bytes_);
    return *this;
}

MappedFile::~MappedFile()
{
    if (!bytes_.empty())
        ::munmap(const_cast<std::byte*>(bytes_.data()), bytes_.size());
}

} // namespace VX
