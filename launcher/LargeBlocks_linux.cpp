// Large blocks of memory in pages of 2 MiB, where the system gives such pages to those who ask: the geometry of a large
// file is written once into fresh memory, and the system's work for each small page would take longer than the writing.

#include <sys/mman.h>

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

namespace
{

constexpr std::size_t hugePage = std::size_t{2} << 20U;

void adviseHugePages(void* block, std::size_t size)
{
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
            if (size >= 2 * hugePage)
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
