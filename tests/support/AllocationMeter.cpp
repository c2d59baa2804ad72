#include "tests/support/AllocationMeter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> g_allocated{0};
thread_local int t_untilRefused = -1; // requests that go well before one is refused; negative: all do

} // namespace

std::size_t AllocatedSoFar() {
    return g_allocated;
}

void RefuseAllocation(int nth) {
    t_untilRefused = nth;
}

bool RefusalIsMet() {
    const bool met = t_untilRefused < 0;
    t_untilRefused = -1;
    return met;
}

// Both forms: under a sanitizer the one without exceptions does not come from the other.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (t_untilRefused >= 0 && t_untilRefused-- == 0)
        return nullptr;
    g_allocated += size;
    return std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size) {
    if (void* block = operator new(size, std::nothrow))
        return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
