#pragma once

#include <cstddef>
#include <string>

namespace VX
{

/// Overwrites all memory of `text` with zeros, also what an earlier, longer text left there, and empties it.
/// @threads any one at a time
inline void wipe(std::string& text)
{
    text.resize(text.capacity());
    // Volatile: the compiler would leave out what nobody reads again.
    volatile char* const bytes = text.data();
    for (std::size_t i = 0; i < text.size(); ++i)
        bytes[i] = 0;
    text.clear();
}

} // namespace VX
