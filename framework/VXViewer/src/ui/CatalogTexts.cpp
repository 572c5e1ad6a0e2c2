#include "CatalogTexts.h"

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>

namespace VX
{

namespace
{

// The layout of the file: "The Format of GNU MO Files" in the manual of GNU gettext.
constexpr std::uint32_t magic = 0x950412DE;
constexpr std::size_t countOffset = 8;
constexpr std::size_t tableOffset = 16;

/// A line of the table of texts.
struct Entry
{
    std::uint32_t length;
    std::uint32_t offset;
};

template <typename T>
T read(const std::string& bytes, std::size_t offset)
{
    T value{};
    if (offset <= bytes.size() && sizeof(T) <= bytes.size() - offset)
        std::memcpy(&value, bytes.data() + offset, sizeof(T));
    return value;
}

} // namespace

std::string translationsIn(const std::filesystem::path& catalog)
{
    std::ifstream file(catalog, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), {});
    std::string texts;
    if (read<std::uint32_t>(bytes, 0) != magic)
        return texts;
    const std::size_t table = read<std::uint32_t>(bytes, tableOffset);
    const std::size_t count = read<std::uint32_t>(bytes, countOffset);
    for (std::size_t at = table; at < bytes.size() && at < table + count * sizeof(Entry); at += sizeof(Entry))
    {
        const auto entry = read<Entry>(bytes, at);
        if (entry.offset < bytes.size())
            texts.append(bytes, entry.offset, entry.length);
    }
    return texts;
}

} // namespace VX
