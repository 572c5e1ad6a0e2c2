#include "CurlMemory.h"

#include <malloc.h>
#include <string.h> // NOLINT(modernize-deprecated-headers): for explicit_bzero

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace VX
{

namespace
{

void wipeAndFree(void* memory)
{
    if (memory)
        ::explicit_bzero(memory, ::malloc_usable_size(memory));
    std::free(memory);
}

/// As `realloc`, which would move the content without a trace of where it was.
void* resize(void* memory, std::size_t size)
{
    if (!memory)
        return std::malloc(size);
    void* const moved = std::malloc(size);
    if (!moved)
        return nullptr;
    std::copy_n(static_cast<const std::byte*>(memory), std::min(size, ::malloc_usable_size(memory)),
                static_cast<std::byte*>(moved));
    wipeAndFree(memory);
    return moved;
}

} // namespace

CURLcode initialiseCurl()
{
    return curl_global_init_mem(CURL_GLOBAL_DEFAULT, std::malloc, wipeAndFree, resize, ::strdup, std::calloc);
}

} // namespace VX
