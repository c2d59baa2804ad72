#include "platform/gdi/GdiObject.h"

#include <kelcore/platform/testing.h>

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <vector>

namespace kel::platform {
namespace {

// A handle: generation in bits 24 to 31, stock in bit 23, kind in bits 16 to 22, row in the low half.
constexpr std::uintptr_t kStockBit = 0x800000;
constexpr std::size_t kFirstRow = 16; // no handle is a small number
constexpr std::size_t kRows = 0x10000;

// Another number whenever an object may be gone.
constinit std::atomic<unsigned> removals{0};

struct Row {
    std::shared_ptr<GdiObject> object;
    std::uint8_t generation = 0;
    std::uint16_t nextFree = 0;
};

std::size_t RowOf(HGDIOBJ handle) {
    return reinterpret_cast<std::uintptr_t>(handle) & 0xFFFF;
}

} // namespace

class GdiTable {
public:
    // Never destroyed: objects are deleted by destructors of static objects, in an order nobody knows.
    static GdiTable& Get() {
        static GdiTable& table = *new GdiTable;
        return table;
    }

    HGDIOBJ Add(std::shared_ptr<GdiObject> object, bool stock) {
        std::lock_guard guard(m_mutex);
        const std::size_t index = TakeRow();
        Row& row = m_rows[index];
        ++row.generation;
        object->m_stock = stock;
        object->m_handle = reinterpret_cast<HGDIOBJ>(std::uintptr_t{row.generation} << 24 | (stock ? kStockBit : 0) |
                                                     static_cast<std::uintptr_t>(object->Type()) << 16 | index);
        m_counted += stock ? 0 : 1;
        row.object = std::move(object);
        return row.object->m_handle;
    }

    std::shared_ptr<GdiObject> Find(HGDIOBJ handle) {
        std::lock_guard guard(m_mutex);
        const Row* row = RowHolding(handle);
        return row ? row->object : nullptr;
    }

    // Selections are let go with no lock held, so whoever of the two comes second sees what the other one has done.
    bool Remove(GdiObject& object) {
        if (!Find(object.Handle()))
            return false;
        const bool again = object.m_doomed.exchange(true);
        if (object.Selections() != 0)
            return true;
        Release(object);
        return !again;
    }

    void Deselected(const GdiObject& object) {
        if (object.m_doomed)
            Release(object);
    }

    std::size_t Counted() {
        std::lock_guard guard(m_mutex);
        return m_counted;
    }

    std::vector<std::shared_ptr<GdiObject>> All() {
        std::lock_guard guard(m_mutex);
        std::vector<std::shared_ptr<GdiObject>> objects;
        for (const Row& row : m_rows)
            if (row.object && !row.object->IsStock())
                objects.push_back(row.object);
        return objects;
    }

private:
    // A deleted handle's row rests until this many others are free, so that a stale handle stays invalid for a while.
    static constexpr std::size_t kResting = 64;

    GdiTable() : m_rows(kFirstRow) {}

    Row* RowHolding(HGDIOBJ handle) {
        const std::size_t index = RowOf(handle);
        if (index >= m_rows.size() || !m_rows[index].object || m_rows[index].object->Handle() != handle)
            return nullptr;
        return &m_rows[index];
    }

    std::size_t TakeRow() {
        if (m_freeRows > kResting || (m_rows.size() == kRows && m_freeRows > 0)) {
            const std::size_t index = m_firstFree;
            m_firstFree = m_rows[index].nextFree;
            --m_freeRows;
            return index;
        }
        if (m_rows.size() == kRows)
            throw std::bad_alloc();
        m_rows.emplace_back();
        return m_rows.size() - 1;
    }

    void Release(const GdiObject& object) {
        std::shared_ptr<GdiObject> last; // goes after the lock: it may let go of selections
        std::lock_guard guard(m_mutex);
        Row* row = RowHolding(object.Handle());
        if (!row)
            return;
        last = std::move(row->object);
        const auto index = static_cast<std::uint16_t>(row - m_rows.data());
        (m_freeRows == 0 ? m_firstFree : m_rows[m_lastFree].nextFree) = index;
        m_lastFree = index;
        ++m_freeRows;
        --m_counted;
        ++removals;
    }

    std::mutex m_mutex; // guards what follows
    std::vector<Row> m_rows;
    std::uint16_t m_firstFree = 0;
    std::uint16_t m_lastFree = 0;
    std::size_t m_freeRows = 0;
    std::size_t m_counted = 0;
};

HGDIOBJ AddObject(std::shared_ptr<GdiObject> object, bool stock) {
    return WithMemory(HGDIOBJ(), [&] { return GdiTable::Get().Add(std::move(object), stock); });
}

std::shared_ptr<GdiObject> FindAnyObject(HGDIOBJ handle) {
    return GdiTable::Get().Find(handle);
}

// Each thread remembers its last one.
GdiObject* PeekObject(HGDIOBJ handle) {
    struct Seen {
        HGDIOBJ handle;
        GdiObject* object;
        unsigned removals;
    };
    thread_local Seen seen{};
    const unsigned now = removals.load(std::memory_order_acquire);
    if (seen.handle != handle || seen.removals != now || !seen.object)
        seen = {handle, GdiTable::Get().Find(handle).get(), now};
    return seen.object;
}

bool RemoveObject(GdiObject& object) {
    return GdiTable::Get().Remove(object);
}

Selection::Selection(std::shared_ptr<GdiObject> object) : m_object(std::move(object)) {
    if (m_object)
        ++m_object->m_selections;
}

Selection::~Selection() {
    if (m_object && --m_object->m_selections == 0)
        GdiTable::Get().Deselected(*m_object);
}

namespace {

const char* NameOf(GdiType type) {
    switch (type) {
    case GdiType::Context:
        return "context";
    case GdiType::Region:
        return "region";
    case GdiType::Bitmap:
        return "bitmap";
    case GdiType::Palette:
        return "palette";
    case GdiType::Font:
        return "font";
    case GdiType::Brush:
        return "brush";
    case GdiType::Pen:
        return "pen";
    }
    return "object";
}

std::string LineOf(const GdiObject& object) {
    char line[64];
    std::snprintf(line, sizeof line, "%08zx %s", reinterpret_cast<std::size_t>(object.Handle()), NameOf(object.Type()));
    const std::string details = object.Details();
    const int selections = object.Selections();
    return line + (details.empty() ? details : " " + details) +
           (selections == 0 ? "" : ", selected " + std::to_string(selections)) + "\n";
}

} // namespace

std::size_t GdiObjects() {
    return GdiTable::Get().Counted();
}

std::string ListGdiObjects() {
    std::string list;
    for (const auto& object : GdiTable::Get().All())
        list += LineOf(*object);
    return list;
}

} // namespace kel::platform
