#include "SegmentFile.h"

#include <fmt/format.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <system_error>

namespace VX
{

namespace
{

// Grows when the content of a segment changes, so that programs of two versions do not meet in one.
constexpr int layoutVersion = 1;

// Bytes that are locked; they need not exist.
constexpr off_t lockByte = 0;
constexpr off_t usersByte = 1;
constexpr off_t firstSlot = 2;
constexpr off_t slotsEnd = off_t{1} << 30;

struct flock range(short type, off_t begin, off_t end)
{
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = begin;
    lock.l_len = end - begin;
    return lock;
}

struct stat statusOf(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        throw std::system_error(errno, std::generic_category(), "status of a segment");
    return status;
}

// Not the older kind of lock, which belongs to the process: objects of one process would not see each other.
bool setLock(int descriptor, int command, short type, off_t byte)
{
    struct flock lock = range(type, byte, byte + 1);
    while (::fcntl(descriptor, command, &lock) != 0)
    {
        if (errno == EAGAIN || errno == EACCES)
            return false;
        if (errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "lock of a segment");
    }
    return true;
}

// Any byte that another open file has locked.
std::optional<off_t> findForeignLock(int descriptor, off_t begin, off_t end)
{
    struct flock lock = range(F_WRLCK, begin, end);
    if (::fcntl(descriptor, F_OFD_GETLK, &lock) != 0)
        throw std::system_error(errno, std::generic_category(), "locks of a segment");
    return lock.l_type == F_UNLCK ? std::nullopt : std::optional(lock.l_start);
}

// The system tells of one lock in a range, not necessarily of the first.
std::size_t countForeignLocks(int descriptor, off_t begin, off_t end)
{
    if (begin == end)
        return 0;
    const auto found = findForeignLock(descriptor, begin, end);
    return found ? 1 + countForeignLocks(descriptor, begin, *found) + countForeignLocks(descriptor, *found + 1, end)
                 : 0;
}

} // namespace

std::string segmentName(const std::string& channel)
{
    return fmt::format("{}.v{}.{}", channel, layoutVersion, ::geteuid());
}

SegmentFile::SegmentFile(int descriptor)
    : descriptor_(descriptor)
{
}

bool SegmentFile::isPrivate() const
{
    const struct stat status = statusOf(descriptor_);
    return S_ISREG(status.st_mode) && status.st_uid == ::geteuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

bool SegmentFile::isRemoved() const
{
    return statusOf(descriptor_).st_nlink == 0;
}

void SegmentFile::lock()
{
    setLock(descriptor_, F_OFD_SETLKW, F_WRLCK, lockByte);
}

void SegmentFile::unlock()
{
    setLock(descriptor_, F_OFD_SETLK, F_UNLCK, lockByte);
}

void SegmentFile::join()
{
    setLock(descriptor_, F_OFD_SETLK, F_RDLCK, usersByte);
}

void SegmentFile::leave()
{
    setLock(descriptor_, F_OFD_SETLK, F_UNLCK, usersByte);
}

bool SegmentFile::hasOthers() const
{
    return findForeignLock(descriptor_, usersByte, usersByte + 1).has_value();
}

long SegmentFile::startListening()
{
    off_t slot = firstSlot;
    while (!setLock(descriptor_, F_OFD_SETLK, F_WRLCK, slot))
        ++slot;
    return slot;
}

void SegmentFile::stopListening(long slot)
{
    setLock(descriptor_, F_OFD_SETLK, F_UNLCK, slot);
}

std::size_t SegmentFile::otherListeners() const
{
    return countForeignLocks(descriptor_, firstSlot, slotsEnd);
}

} // namespace VX
