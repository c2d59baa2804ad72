#include "runtime/SharedHandles.h"

#include <atomic>
#include <map>
#include <mutex>

namespace kel::SharedHandles {
namespace {

struct Table {
    std::mutex lock;
    // Holders beyond the first.
    std::map<HANDLE, unsigned> others;
    std::atomic<std::size_t> size{0};
};

// Never destroyed: static objects of clients may still hold files when the library's own statics are gone.
Table& Shared() {
    static Table& table = *new Table;
    return table;
}

} // namespace

void Share(HANDLE handle) {
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE)
        return;
    Table& table = Shared();
    const std::lock_guard guard(table.lock);
    ++table.others[handle];
    table.size.store(table.others.size(), std::memory_order_release);
}

bool DropIsLast(HANDLE handle) noexcept {
    Table& table = Shared();
    if (table.size.load(std::memory_order_acquire) == 0)
        return true;
    const std::lock_guard guard(table.lock);
    const auto entry = table.others.find(handle);
    if (entry == table.others.end())
        return true;
    if (--entry->second == 0)
        table.others.erase(entry);
    table.size.store(table.others.size(), std::memory_order_release);
    return false;
}

} // namespace kel::SharedHandles
