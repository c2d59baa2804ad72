#include "platform/kernel/BlockMemory.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>
#include <utility>

namespace kel::platform {
namespace {

// Blocks of photographs: bringing in their pages can take as long as decoding the photograph.
constexpr std::size_t kLarge = std::size_t{8} << 20;
constexpr std::uintptr_t kLargePage = std::uintptr_t{2} << 20;

/// Large blocks that nobody uses. A program that handles one picture after another gets on with two.
class Spares {
public:
    // Never destroyed: blocks are freed by destructors of static objects.
    static Spares& Get() {
        static Spares& spares = *new Spares;
        return spares;
    }

    /// Keeps a block, if it is not too large to lie about, and gives up the one that was kept longest.
    /// @return the memory that is to be freed instead, or null.
    void* Keep(void* memory, std::size_t bytes) {
        if (bytes < kLarge || bytes > kMostBytes)
            return memory;
        void* oldest = nullptr;
        if (m_spares[0].memory)
            oldest = std::exchange(m_spares[1], m_spares[0]).memory;
        m_spares[0] = {memory, bytes};
        return oldest;
    }

    /// @return a block of at most a quarter more than that; null if there is none.
    BlockMemory Take(std::size_t bytes) {
        for (Spare& spare : m_spares)
            if (spare.bytes >= bytes && spare.bytes - bytes <= bytes / 4) {
                const Spare taken = std::exchange(spare, {});
                return BlockMemory(taken.memory, {taken.bytes});
            }
        return nullptr;
    }

private:
    static constexpr std::size_t kMostBytes = std::size_t{64} << 20;

    struct Spare {
        void* memory = nullptr;
        std::size_t bytes = 0;
    };
    Spare m_spares[2]; // the one kept last first
};

// With pages of 2 MiB, where the system has them, a picture is brought in by some twenty faults, not ten thousand.
void PreferLargePages(void* memory, std::size_t bytes) {
    const auto address = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t begin = (address + kLargePage - 1) / kLargePage * kLargePage;
    const std::uintptr_t end = (address + bytes) / kLargePage * kLargePage;
    if (begin < end) // it is only advice, which may be refused
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
}

} // namespace

void BlockRelease::operator()(void* memory) const {
    std::free(Spares::Get().Keep(memory, bytes));
}

// Zeroed memory comes from the system: clearing a spare block would hold up whoever waits for the table of blocks.
BlockMemory AllocateBlock(std::size_t bytes, bool zeroed) {
    if (bytes > static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max()))
        throw std::bad_alloc();
    bytes = std::max<std::size_t>(bytes, 1); // a fixed block of no bytes is still a block
    if (bytes >= kLarge && !zeroed)
        if (BlockMemory spare = Spares::Get().Take(bytes))
            return spare;
    BlockMemory memory(zeroed ? std::calloc(bytes, 1) : std::malloc(bytes), {bytes});
    if (!memory)
        throw std::bad_alloc();
    if (bytes >= kLarge)
        PreferLargePages(memory.get(), bytes);
    return memory;
}

} // namespace kel::platform
