#include "platform/kernel/Faults.h"
#include "platform/kernel/Handles.h"
#include "platform/modules/Guarded.h"
#include "platform/modules/Module.h"

#include <kelcore/platform/accelerators.h>

#include <algorithm>
#include <vector>

using namespace kel::platform;

namespace {

constexpr int kMostRows = 32767;

/// A row as resources store it: flags, key, command and a pad, 16 bits each. The last row of a table says so.
constexpr std::size_t kStoredRow = 8;
constexpr WORD kLastRow = 0x80;

class AcceleratorTable : public Object {
public:
    static constexpr ObjectKind kKind = ObjectKind::AcceleratorTable;
    explicit AcceleratorTable(std::vector<ACCEL> rows) : Object(kKind), m_rows(std::move(rows)) {}
    const std::vector<ACCEL>& Rows() const { return m_rows; }

private:
    const std::vector<ACCEL> m_rows;
};

/// The table of a handle; the last error is the one for such handles.
class PinnedTable : public Pinned<AcceleratorTable> {
public:
    explicit PinnedTable(HACCEL handle) : Pinned(reinterpret_cast<HANDLE>(handle)) {
        if (!*this)
            Fail(ERROR_INVALID_ACCEL_HANDLE);
    }
};

HACCEL OpenTable(std::vector<ACCEL> rows) {
    return reinterpret_cast<HACCEL>(OpenHandle(std::make_shared<AcceleratorTable>(std::move(rows))));
}

HACCEL ReadTable(const Bytes& stored) {
    std::vector<ACCEL> rows;
    for (std::size_t at = 0; stored.Has(at, kStoredRow); at += kStoredRow) {
        const WORD flags = stored.Word(at);
        rows.push_back({static_cast<BYTE>(flags & ~kLastRow), stored.Word(at + 2), stored.Word(at + 4)});
        if (flags & kLastRow)
            return OpenTable(std::move(rows));
    }
    return Fail(ERROR_INVALID_DATA), nullptr;
}

} // namespace

HACCEL WINAPI LoadAcceleratorsA(HINSTANCE module, LPCSTR name) {
    if (CallFails("LoadAcceleratorsA"))
        return nullptr;
    return Guarded([&] {
        Bytes stored;
        return FindResourceBytes(module, RT_ACCELERATOR, name, stored) ? ReadTable(stored) : nullptr;
    });
}

HACCEL WINAPI CreateAcceleratorTableA(LPACCEL rows, int count) {
    if (CallFails("CreateAcceleratorTableA"))
        return nullptr;
    if (rows == nullptr || count < 1 || count > kMostRows)
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    return Guarded([&] { return OpenTable(std::vector<ACCEL>(rows, rows + count)); });
}

int WINAPI CopyAcceleratorTableA(HACCEL table, LPACCEL rows, int count) {
    if (CallFails("CopyAcceleratorTableA"))
        return 0;
    const PinnedTable pinned(table);
    if (!pinned)
        return 0;
    const std::vector<ACCEL>& all = pinned->Rows();
    const int present = static_cast<int>(all.size());
    if (rows == nullptr)
        return present;
    const int copied = std::clamp(count, 0, present);
    std::copy_n(all.begin(), copied, rows);
    return copied;
}

BOOL WINAPI DestroyAcceleratorTable(HACCEL table) {
    // Freeing is done before an injected failure is reported, see CallFails.
    const bool fails = CallFails("DestroyAcceleratorTable");
    const DWORD fault = GetLastError();
    PinnedTable pinned(table);
    const bool destroyed = pinned && pinned.CloseHandle();
    return fails ? Fail(fault) : destroyed;
}
