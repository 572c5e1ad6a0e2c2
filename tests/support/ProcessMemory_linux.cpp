#include "ProcessMemory.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <string>

namespace VX::Test
{

namespace
{

/// No program that is tested has as much memory; a sanitizer keeps so many addresses for its notes.
constexpr std::uint64_t tooLarge = std::uint64_t{1} << 34U;

/// A range of addresses that a process can read.
struct Range
{
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

/// The next range that a list such as /proc/ID/maps has; an empty one at its end.
Range nextRange(std::istream& list)
{
    for (std::string line; std::getline(list, line);)
    {
        std::size_t used = 0;
        Range range;
        range.begin = std::stoull(line, &used, 16);
        range.end = std::stoull(line.substr(used + 1), &used, 16);
        const bool isReadable = line.find(" r") != std::string::npos;
        // The system's own pages cannot be read this way.
        if (isReadable && range.end - range.begin < tooLarge && line.find("[v") == std::string::npos)
            return range;
    }
    return {};
}

std::size_t count(std::string_view memory, std::string_view text)
{
    std::size_t found = 0;
    for (std::size_t at = memory.find(text); at != std::string_view::npos; at = memory.find(text, at + 1))
        ++found;
    return found;
}

} // namespace

std::size_t countInMemory(int process, std::string_view text)
{
    std::ifstream list(fmt::format("/proc/{}/maps", process));
    std::ifstream memory(fmt::format("/proc/{}/mem", process), std::ios::binary);
    EXPECT_TRUE(memory) << "the memory of process " << process << " cannot be read";
    std::size_t found = 0;
    std::string bytes;
    for (Range range = nextRange(list); range.end > range.begin; range = nextRange(list))
    {
        bytes.resize(range.end - range.begin);
        memory.clear();
        memory.seekg(static_cast<std::streamoff>(range.begin));
        memory.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        // What the process has given back meanwhile is missing at the end.
        found += count(std::string_view(bytes).substr(0, static_cast<std::size_t>(memory.gcount())), text);
    }
    return found;
}

} // namespace VX::Test
