#include "platform/kernel/Handles.h"

#include "platform/kernel/LastError.h"

#include <array>
#include <mutex>
#include <new>

namespace kel::platform {
namespace {

// Beside the HANDLE_FLAG_ bits of a slot: handles that belong to nobody (the standard ones, those of running threads)
// are left out of OpenHandles.
constexpr std::uint32_t kUncounted = 0x80000000u;

struct Row : HandleSlot {
    std::uint32_t index = 0;
    Row* nextFree = nullptr;
};

} // namespace

/// All handles of the process. Rows live in blocks that are never moved or freed, so that a lookup takes no lock: it
/// counts itself into the row's state with one compare-and-swap, which fails once the handle is closed.
class HandleTable {
public:
    // Never destroyed: handles are closed by destructors of static objects, in an order nobody knows.
    static HandleTable& Get() {
        static HandleTable& table = *new HandleTable;
        return table;
    }

    HANDLE Open(std::shared_ptr<Object> object, DWORD access, std::uint32_t flags) {
        Row* row = TakeRow();
        row->access = access;
        row->flags.store(flags, std::memory_order_relaxed);
        object->m_handles.fetch_add(1, std::memory_order_relaxed);
        row->object = std::move(object);
        Count(*row, 1);
        row->state.store(HandleSlot::kOpen, std::memory_order_release);
        return reinterpret_cast<HANDLE>((static_cast<std::uintptr_t>(row->index) + 1) * 4);
    }

    HandleSlot* Pin(HANDLE handle) {
        const auto value = reinterpret_cast<std::uintptr_t>(handle);
        const std::size_t index = value / 4 - 1; // null wraps to an index that no block has
        if (value % 4 != 0 || index >= kBlocks * kBlockRows)
            return nullptr;
        Block* block = m_blocks[index / kBlockRows].load(std::memory_order_acquire);
        return block && TryPin((*block)[index % kBlockRows]) ? &(*block)[index % kBlockRows] : nullptr;
    }

    void Unpin(HandleSlot* slot) {
        if (slot->state.fetch_sub(1, std::memory_order_acq_rel) == 1)
            Release(static_cast<Row*>(slot));
    }

    // Ends the handle of a slot that the caller has pinned; false if another thread was faster.
    bool Close(HandleSlot* slot) {
        if (!(slot->state.fetch_and(~HandleSlot::kOpen, std::memory_order_acq_rel) & HandleSlot::kOpen))
            return false;
        Count(*slot, -1);
        return true;
    }

    std::size_t OpenCount() const { return static_cast<std::size_t>(m_open.load(std::memory_order_relaxed)); }

private:
    static constexpr std::size_t kBlockRows = 1024;
    static constexpr std::size_t kBlocks = 16384; // 16 million handles, as many as Windows gives a process
    // A closed handle's row rests until this many others are free, so that a stale handle stays invalid for a while.
    static constexpr std::size_t kResting = 256;
    using Block = std::array<Row, kBlockRows>;

    static bool TryPin(HandleSlot& slot) {
        std::uint32_t state = slot.state.load(std::memory_order_relaxed);
        while (state & HandleSlot::kOpen)
            if (slot.state.compare_exchange_weak(state, state + 1, std::memory_order_acquire,
                                                 std::memory_order_relaxed))
                return true;
        return false;
    }

    void Count(const HandleSlot& slot, int change) {
        if (!(slot.flags.load(std::memory_order_relaxed) & kUncounted))
            m_open.fetch_add(change, std::memory_order_relaxed);
    }

    Row* TakeRow() {
        std::lock_guard guard(m_mutex);
        if (m_freeRows <= kResting)
            return FreshRow();
        Row* row = m_firstFree;
        m_firstFree = row->nextFree;
        --m_freeRows;
        return row;
    }

    Row* FreshRow() {
        const std::size_t block = m_used / kBlockRows;
        if (block == kBlocks)
            throw std::bad_alloc();
        if (m_used % kBlockRows == 0)
            m_blocks[block].store(new Block, std::memory_order_release);
        Row* row = &(*m_blocks[block].load(std::memory_order_relaxed))[m_used % kBlockRows];
        row->index = m_used++;
        return row;
    }

    // The last pin of a closed handle is gone.
    void Release(Row* row) {
        const std::shared_ptr<Object> object = std::move(row->object);
        if (object->m_handles.fetch_sub(1, std::memory_order_acq_rel) == 1)
            object->HandlesClosed();
        std::lock_guard guard(m_mutex);
        row->nextFree = nullptr;
        (m_freeRows == 0 ? m_firstFree : m_lastFree->nextFree) = row;
        m_lastFree = row;
        ++m_freeRows;
    }

    std::array<std::atomic<Block*>, kBlocks> m_blocks{};
    std::atomic<std::ptrdiff_t> m_open{0};
    std::mutex m_mutex; // guards what follows
    std::size_t m_used = 0;
    Row* m_firstFree = nullptr;
    Row* m_lastFree = nullptr;
    std::size_t m_freeRows = 0;
};

namespace {

HANDLE OpenWithFlags(std::shared_ptr<Object> object, DWORD access, std::uint32_t flags) {
    try {
        return HandleTable::Get().Open(std::move(object), access, flags);
    } catch (const std::bad_alloc&) {
        Fail(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
}

} // namespace

HANDLE OpenHandle(std::shared_ptr<Object> object, DWORD access, bool inherit) {
    return OpenWithFlags(std::move(object), access, inherit ? HANDLE_FLAG_INHERIT : 0);
}

HANDLE OpenUncountedHandle(std::shared_ptr<Object> object, DWORD access, bool inherit) {
    return OpenWithFlags(std::move(object), access, (inherit ? HANDLE_FLAG_INHERIT : 0) | kUncounted);
}

HandleSlot* PinSlot(HANDLE handle) {
    HandleSlot* slot = HandleTable::Get().Pin(handle);
    if (!slot)
        Fail(ERROR_INVALID_HANDLE);
    return slot;
}

void UnpinSlot(HandleSlot* slot) {
    HandleTable::Get().Unpin(slot);
}

bool PinnedObject::CloseHandle() {
    const bool isProtected = Flags().load(std::memory_order_relaxed) & HANDLE_FLAG_PROTECT_FROM_CLOSE;
    return (!isProtected && HandleTable::Get().Close(m_slot)) || Fail(ERROR_INVALID_HANDLE);
}

void PinnedObject::Reject() {
    UnpinSlot(m_slot);
    m_slot = nullptr;
    Fail(ERROR_INVALID_HANDLE);
}

std::size_t OpenSlots() {
    return HandleTable::Get().OpenCount();
}

} // namespace kel::platform
