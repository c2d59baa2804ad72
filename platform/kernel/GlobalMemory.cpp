#include <kelcore/platform/globalmemory.h>

#include "platform/kernel/BlockMemory.h"
#include "platform/kernel/Faults.h"
#include "platform/kernel/LastError.h"

#include <kelcore/platform/testing.h>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <new>
#include <unordered_map>

namespace kel::platform {
namespace {

struct Block {
    BlockMemory memory; // null for a movable block of no bytes
    SIZE_T size = 0;
    UINT flags = 0; // GMEM_MOVEABLE, GMEM_DISCARDABLE
    UINT locks = 0;

    bool IsMovable() const { return (flags & GMEM_MOVEABLE) != 0; }
};

constexpr UINT kMostLocks = GMEM_LOCKCOUNT;
constexpr UINT kKeptFlags = GMEM_MOVEABLE | GMEM_DISCARDABLE;

/// All blocks. Handles of movable ones are numbers that no address of a block can be, and are not given out twice.
class BlockTable {
public:
    // Never destroyed: blocks are freed by destructors of static objects, in an order nobody knows.
    static BlockTable& Get() {
        static BlockTable& table = *new BlockTable;
        return table;
    }

    HGLOBAL Add(SIZE_T size, UINT flags) {
        Block block{nullptr, size, flags & kKeptFlags};
        if (size != 0 || !block.IsMovable())
            block.memory = AllocateBlock(size, flags & GMEM_ZEROINIT);
        const HGLOBAL handle = block.IsMovable() ? NewHandle() : block.memory.get();
        AddAddress(block, handle);
        m_blocks.emplace(handle, std::move(block));
        return handle;
    }

    Block* Find(HGLOBAL handle) {
        const auto found = m_blocks.find(handle);
        if (found != m_blocks.end())
            return &found->second;
        Fail(ERROR_INVALID_HANDLE);
        return nullptr;
    }

    HGLOBAL HandleOf(const void* address) const {
        const auto found = m_handles.find(address);
        if (found != m_handles.end())
            return found->second;
        Fail(ERROR_INVALID_HANDLE);
        return nullptr;
    }

    void Remove(HGLOBAL handle) {
        const auto found = m_blocks.find(handle);
        m_handles.erase(found->second.memory.get());
        m_blocks.erase(found);
    }

    /// Gives a block another size and, where that needs one, another address.
    HGLOBAL Resize(HGLOBAL handle, Block& block, SIZE_T size, bool zeroed) {
        if (size == 0 && block.IsMovable()) {
            m_handles.erase(block.memory.get());
            block.memory.reset();
            block.size = 0;
            return handle;
        }
        BlockMemory memory = AllocateBlock(size, zeroed);
        if (block.memory)
            std::memcpy(memory.get(), block.memory.get(), std::min(size, block.size));
        const HGLOBAL newHandle = block.IsMovable() ? handle : memory.get();
        m_handles.emplace(memory.get(), newHandle);
        m_handles.erase(block.memory.get());
        block.memory = std::move(memory);
        block.size = size;
        Rename(handle, newHandle);
        return newHandle;
    }

    /// Makes a fixed block movable; it keeps its address.
    HGLOBAL MakeMovable(HGLOBAL handle, Block& block) {
        const HGLOBAL newHandle = NewHandle();
        block.flags |= GMEM_MOVEABLE;
        m_handles[block.memory.get()] = newHandle;
        Rename(handle, newHandle);
        return newHandle;
    }

    std::size_t Count() const { return m_blocks.size(); }

    std::mutex mutex; // guards what follows

private:
    HGLOBAL NewHandle() {
        m_lastHandle += 16;
        return reinterpret_cast<HGLOBAL>(m_lastHandle);
    }

    void AddAddress(const Block& block, HGLOBAL handle) {
        if (block.memory)
            m_handles.emplace(block.memory.get(), handle);
    }

    void Rename(HGLOBAL from, HGLOBAL to) {
        if (from == to)
            return;
        auto node = m_blocks.extract(from);
        node.key() = to;
        m_blocks.insert(std::move(node));
    }

    std::unordered_map<HGLOBAL, Block> m_blocks;
    std::unordered_map<const void*, HGLOBAL> m_handles; // by address
    std::uintptr_t m_lastHandle = 0x10002;              // blocks are aligned: bit 1 is no part of their addresses
};

/// Runs @p work with the table locked. @return its result, or @p failure with ERROR_NOT_ENOUGH_MEMORY.
template <class Result, class Work>
Result InTable(Result failure, Work work) {
    BlockTable& table = BlockTable::Get();
    std::lock_guard guard(table.mutex);
    try {
        return work(table);
    } catch (const std::bad_alloc&) {
        Fail(ERROR_NOT_ENOUGH_MEMORY);
        return failure;
    }
}

HGLOBAL Change(BlockTable& table, HGLOBAL handle, SIZE_T bytes, UINT flags) {
    Block* block = table.Find(handle);
    if (!block)
        return nullptr;
    if (flags & GMEM_MODIFY)
        return (flags & GMEM_MOVEABLE) && !block->IsMovable() ? table.MakeMovable(handle, *block) : handle;
    if (bytes <= block->size && bytes != 0) {
        block->size = bytes;
        return handle;
    }
    const bool mayMove = (flags & GMEM_MOVEABLE) || (block->IsMovable() && block->locks == 0);
    if (!mayMove)
        return Fail(ERROR_NOT_ENOUGH_MEMORY), nullptr;
    return table.Resize(handle, *block, bytes, flags & GMEM_ZEROINIT);
}

LPVOID Lock(BlockTable& table, HGLOBAL handle) {
    Block* block = table.Find(handle);
    if (!block)
        return nullptr;
    if (!block->memory)
        return Fail(ERROR_DISCARDED), nullptr;
    if (block->IsMovable() && block->locks < kMostLocks)
        ++block->locks;
    return block->memory.get();
}

BOOL Unlock(BlockTable& table, HGLOBAL handle) {
    Block* block = table.Find(handle);
    if (!block)
        return FALSE;
    if (!block->IsMovable())
        return TRUE;
    if (block->locks == 0)
        return Fail(ERROR_NOT_LOCKED);
    return --block->locks != 0 || Fail(NO_ERROR);
}

} // namespace

std::size_t GlobalBlocks() {
    return InTable(std::size_t{0}, [](BlockTable& table) { return table.Count(); });
}

} // namespace kel::platform

using namespace kel::platform;

HGLOBAL WINAPI GlobalAlloc(UINT flags, SIZE_T bytes) {
    if (CallFails("GlobalAlloc"))
        return nullptr;
    return InTable(HGLOBAL(), [&](BlockTable& table) { return table.Add(bytes, flags); });
}

HGLOBAL WINAPI GlobalReAlloc(HGLOBAL memory, SIZE_T bytes, UINT flags) {
    if (CallFails("GlobalReAlloc"))
        return nullptr;
    return InTable(HGLOBAL(), [&](BlockTable& table) { return Change(table, memory, bytes, flags); });
}

HGLOBAL WINAPI GlobalFree(HGLOBAL memory) {
    const bool fails = CallFails("GlobalFree");
    return InTable(memory, [&](BlockTable& table) {
        if (!memory)
            return memory;
        if (!table.Find(memory))
            return memory;
        table.Remove(memory);
        return fails ? memory : nullptr;
    });
}

LPVOID WINAPI GlobalLock(HGLOBAL memory) {
    if (CallFails("GlobalLock"))
        return nullptr;
    return InTable(LPVOID(), [&](BlockTable& table) { return Lock(table, memory); });
}

BOOL WINAPI GlobalUnlock(HGLOBAL memory) {
    const bool fails = CallFails("GlobalUnlock");
    return InTable(FALSE, [&](BlockTable& table) { return Unlock(table, memory) && !fails; });
}

SIZE_T WINAPI GlobalSize(HGLOBAL memory) {
    if (CallFails("GlobalSize"))
        return 0;
    return InTable(SIZE_T{0}, [&](BlockTable& table) {
        const Block* block = table.Find(memory);
        return block ? block->size : 0;
    });
}

UINT WINAPI GlobalFlags(HGLOBAL memory) {
    if (CallFails("GlobalFlags"))
        return GMEM_INVALID_HANDLE;
    return InTable(static_cast<UINT>(GMEM_INVALID_HANDLE), [&](BlockTable& table) -> UINT {
        const Block* block = table.Find(memory);
        if (!block)
            return GMEM_INVALID_HANDLE;
        return block->locks | (block->flags & GMEM_DISCARDABLE) | (block->memory ? 0 : GMEM_DISCARDED);
    });
}

HGLOBAL WINAPI GlobalHandle(LPCVOID memory) {
    if (CallFails("GlobalHandle"))
        return nullptr;
    return InTable(HGLOBAL(), [&](BlockTable& table) { return table.HandleOf(memory); });
}
