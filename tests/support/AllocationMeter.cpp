#include "tests/support/AllocationMeter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> g_allocated{0};

} // namespace

std::size_t AllocatedSoFar() {
    return g_allocated;
}

void* operator new(std::size_t size) {
    g_allocated += size;
    if (void* block = std::malloc(size == 0 ? 1 : size))
        return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
