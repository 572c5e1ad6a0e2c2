#include "MemoryWatch.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace
{

struct Counts
{
    std::atomic<std::ptrdiff_t> used{0};
    std::atomic<std::ptrdiff_t> most{0};
};

Counts& counts()
{
    static constinit Counts all;
    return all;
}

void* allocate(std::size_t size) noexcept
{
    void* const block = std::malloc(size == 0 ? 1 : size);
    const auto more = static_cast<std::ptrdiff_t>(malloc_usable_size(block));
    const std::ptrdiff_t used = counts().used.fetch_add(more, std::memory_order_relaxed) + more;
    std::ptrdiff_t most = counts().most.load(std::memory_order_relaxed);
    while (used > most && !counts().most.compare_exchange_weak(most, used, std::memory_order_relaxed))
    {
    }
    return block;
}

void* allocateOrThrow(std::size_t size)
{
    if (void* const block = allocate(size))
        return block;
    throw std::bad_alloc();
}

void release(void* block) noexcept
{
    counts().used.fetch_sub(static_cast<std::ptrdiff_t>(malloc_usable_size(block)), std::memory_order_relaxed);
    std::free(block);
}

} // namespace

// All forms but the aligned ones, which nothing here uses: a sanitizer's own forms do not call each other.

void* operator new(std::size_t size)
{
    return allocateOrThrow(size);
}

void* operator new[](std::size_t size)
{
    return allocateOrThrow(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}

void operator delete(void* block) noexcept
{
    release(block);
}

void operator delete[](void* block) noexcept
{
    release(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    release(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    release(block);
}

void operator delete(void* block, const std::nothrow_t&) noexcept
{
    release(block);
}

void operator delete[](void* block, const std::nothrow_t&) noexcept
{
    release(block);
}

namespace VX::Test
{

MemoryWatch::MemoryWatch()
    : before_(counts().used)
{
    counts().most = before_;
}

std::size_t MemoryWatch::peak() const
{
    return static_cast<std::size_t>(counts().most - before_);
}

} // namespace VX::Test
