#include "platform/registry/WalIndex.h"

#include "platform/registry/Sqlite.h"

#include <atomic>
#include <cstring>

namespace kel::platform {
namespace {

// Offset of the transaction counter, 32 bits in the machine's own byte order.
constexpr std::size_t kCounter = 8;

std::uint64_t Load(std::uint64_t& word) {
    return std::atomic_ref<std::uint64_t>(word).load(std::memory_order_acquire);
}

std::uint32_t CounterOf(const ChangeMark& mark) {
    std::uint32_t counter;
    std::memcpy(&counter, reinterpret_cast<const char*>(mark.data()) + kCounter, sizeof counter);
    return counter;
}

} // namespace

void WalIndex::Attach(sqlite3* database) {
    sqlite3_file* file = nullptr;
    RequireSqlite(sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file));
    void volatile* region = nullptr;
    if (file == nullptr || file->pMethods == nullptr || file->pMethods->iVersion < 2)
        throw SqliteFailure{SQLITE_CANTOPEN};
    RequireSqlite(file->pMethods->xShmMap(file, /*region*/ 0, kRegionSize, /*extend*/ 0, &region));
    if (region == nullptr)
        throw SqliteFailure{SQLITE_CANTOPEN};
    m_header = static_cast<std::uint64_t*>(const_cast<void*>(region));
}

ChangeMark WalIndex::Now() const {
    ChangeMark mark;
    for (std::size_t i = 0; i < mark.size(); ++i)
        mark[i] = Load(m_header[i]);
    return mark;
}

bool WalIndex::IsAt(const ChangeMark& mark) const {
    std::uint64_t difference = 0;
    for (std::size_t i = 0; i < mark.size(); ++i)
        difference |= Load(m_header[i]) ^ mark[i];
    return difference == 0;
}

void WalIndex::CountOwnCommit() {
    ChangeMark mark = m_own;
    const std::uint32_t counter = CounterOf(mark) + 1;
    std::memcpy(reinterpret_cast<char*>(mark.data()) + kCounter, &counter, sizeof counter);
    std::atomic_ref<std::uint64_t>(m_own[1]).store(mark[1], std::memory_order_release);
}

bool WalIndex::IsNext(const ChangeMark& before, const ChangeMark& after) {
    return CounterOf(after) == CounterOf(before) + 1;
}

} // namespace kel::platform
