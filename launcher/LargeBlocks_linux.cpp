// Large blocks of memory in pages of 2 MiB, where the system gives such pages to those who ask: the geometry of a large
// file is written once into fresh memory, and the system's work for each small page would take longer than the writing.
// The buffers of a software renderer come from `posix_memalign`.

#include <malloc.h>
#include <sys/mman.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

namespace
{

constexpr std::size_t hugePage = std::size_t{2} << 20U;

/// The software renderer takes about 36 MiB for a picture of many triangles, in small blocks, and frees them after it:
/// what is kept is not fetched anew for the next part of the picture.
constexpr int keptBytes = 40 << 20;

/// Larger blocks go back to the system when they are freed.
constexpr int largeBytes = 1 << 20;

[[maybe_unused]] const bool keepsSmallBlocks =
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs yet.
    mallopt(M_TRIM_THRESHOLD, keptBytes) + mallopt(M_MMAP_THRESHOLD, largeBytes) == 2;

void adviseHugePages(void* block, std::size_t size)
{
    if (size < 2 * hugePage)
        return;
    if (std::align(hugePage, hugePage, block, size) != nullptr)
        ::madvise(block, size & ~(hugePage - 1), MADV_HUGEPAGE);
}

} // namespace

void* operator new(std::size_t size)
{
    while (true)
    {
        if (void* block = std::malloc(size == 0 ? 1 : size))
        {
            adviseHugePages(block, size);
            return block;
        }
        const std::new_handler handler = std::get_new_handler();
        if (handler == nullptr)
            throw std::bad_alloc();
        handler();
    }
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

extern "C" int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept
{
    if (alignment % sizeof(void*) != 0 || (alignment & (alignment - 1)) != 0 || alignment == 0)
        return EINVAL;
    void* aligned = std::aligned_alloc(alignment, size);
    if (aligned == nullptr)
        return ENOMEM;
    adviseHugePages(aligned, size);
    *block = aligned;
    return 0;
}
