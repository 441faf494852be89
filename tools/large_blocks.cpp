// Large blocks of memory on large pages. A big script fills a few arrays of many megabytes once, from end to end, and
// half of its compile would go into page faults of 4 KiB each. The tool replaces the global allocation functions to
// ask for large pages where a block is large; the libraries know nothing of it.
#include <cstdlib>
#include <new>

#include <sys/mman.h>

namespace {

constexpr std::size_t LargePage = std::size_t{2} << 20;

// Whole pages are only a request: where the system has none to give, the block is a plain one.
void* AllocateLarge(std::size_t size) {
    if (size > static_cast<std::size_t>(-1) - LargePage) return nullptr;
    std::size_t rounded = (size + LargePage - 1) / LargePage * LargePage;
    void* block = std::aligned_alloc(LargePage, rounded);
    if (block != nullptr) madvise(block, size, MADV_HUGEPAGE);
    return block;
}

void* Allocate(std::size_t size) {
    if (size >= LargePage) return AllocateLarge(size);
    return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

void* operator new(std::size_t size) {
    for (;;) {
        if (void* block = Allocate(size)) return block;
        std::new_handler handler = std::get_new_handler();
        if (handler == nullptr) throw std::bad_alloc();
        handler();
    }
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
