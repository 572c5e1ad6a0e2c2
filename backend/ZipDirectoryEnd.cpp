#include "ZipDirectoryEnd.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

namespace VX
{

namespace
{

using namespace std::string_view_literals;

// Sizes and places as in the description of the format, "APPNOTE.TXT", sections 4.3.14 to 4.3.16.
constexpr auto endMark = "PK\5\6"sv;
constexpr std::size_t endSize = 22;
constexpr std::size_t longestComment = 0xFFFF;
constexpr auto locatorMark = "PK\6\7"sv;
constexpr std::size_t locatorSize = 20;
constexpr auto largeEndMark = "PK\6\6"sv;
constexpr std::size_t largeEndSize = 56;

std::uint64_t number(std::string_view bytes, std::size_t at, std::size_t size)
{
    std::uint64_t value = 0;
    for (std::size_t i = size; i > 0; --i)
        value = value << 8U | static_cast<unsigned char>(bytes[at + i - 1]);
    return value;
}

std::string readAt(std::ifstream& stream, std::uint64_t offset, std::size_t size)
{
    std::string bytes(size, '\0');
    stream.clear();
    stream.seekg(static_cast<std::streamoff>(offset));
    stream.read(bytes.data(), static_cast<std::streamsize>(size));
    bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
    return bytes;
}

/// Of the 64-bit end that the locator, which stands before the other end, leads to.
bool largeEndIsFine(std::ifstream& stream, std::string_view locator)
{
    const std::uint64_t offset = number(locator, 8, 8);
    const std::string end = readAt(stream, std::min<std::uint64_t>(offset, INT64_MAX), largeEndSize);
    return !end.starts_with(largeEndMark) || end.size() < largeEndSize || number(end, 32, 8) == 1;
}

} // namespace

bool declaresOneEntry(const std::filesystem::path& file)
{
    std::error_code error;
    const std::uint64_t fileSize = std::filesystem::file_size(file, error);
    std::ifstream stream(file, std::ios::binary);
    if (error || !stream)
        return true;
    const std::uint64_t tailSize = std::min<std::uint64_t>(fileSize, longestComment + endSize + locatorSize);
    const std::string bytes = readAt(stream, fileSize - tailSize, static_cast<std::size_t>(tailSize));
    const std::string_view tail = bytes;

    for (std::size_t at = tail.find(endMark); at != tail.npos && tail.size() - at >= endSize;
         at = tail.find(endMark, at + 1))
    {
        // Four bytes of compressed data may look like the mark, but then this does not fit.
        const std::uint64_t directoryEnd = number(tail, at + 12, 4) + number(tail, at + 16, 4);
        const bool hasLocator = at >= locatorSize && tail.substr(at - locatorSize).starts_with(locatorMark);
        if (hasLocator && !largeEndIsFine(stream, tail.substr(at - locatorSize, locatorSize)))
            return false;
        if (!hasLocator && directoryEnd <= fileSize - tailSize + at && number(tail, at + 10, 2) != 1)
            return false;
    }
    return true;
}

} // namespace VX
