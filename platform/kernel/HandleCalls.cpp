#include "platform/kernel/Faults.h"
#include "platform/kernel/Handles.h"
#include "platform/kernel/LastError.h"
#include "platform/kernel/Views.h"
#include "platform/modules/Module.h"

#include <kelcore/platform/system.h>
#include <kelcore/platform/testing.h>

using namespace kel::platform;

namespace {

constexpr DWORD kHandleFlags = HANDLE_FLAG_INHERIT | HANDLE_FLAG_PROTECT_FROM_CLOSE;

// GetCurrentProcess() and GetCurrentThread() of Windows: constants that need no closing and may be closed.
bool IsPseudoHandle(HANDLE handle) {
    const auto value = reinterpret_cast<std::intptr_t>(handle);
    return value == -1 || value == -2;
}

// Searches and accelerator tables have calls of their own that close them.
bool IsClosedElsewhere(ObjectKind kind) {
    return kind == ObjectKind::Search || kind == ObjectKind::AcceleratorTable;
}

// Closing is done before an injected failure is reported, see CallFails.
bool CloseHere(HANDLE handle) {
    PinnedObject object(handle);
    if (!object)
        return false;
    return IsClosedElsewhere(object.Shared()->Kind()) ? Fail(ERROR_INVALID_HANDLE) : object.CloseHandle();
}

bool Duplicate(const PinnedObject& source, HANDLE* target, DWORD access, bool inherit, DWORD options) {
    const DWORD rights = options & DUPLICATE_SAME_ACCESS ? source.Access() : source.Shared()->SpecificRights(access);
    if (rights & ~source.Access())
        return Fail(ERROR_ACCESS_DENIED);
    *target = OpenHandle(source.Shared(), rights, inherit);
    if (*target && inherit)
        source.Shared()->SetInheritable(true);
    return *target != nullptr;
}

} // namespace

std::size_t kel::platform::OpenHandles() {
    return OpenSlots() + OpenViews() + ModuleUses();
}

HANDLE WINAPI GetCurrentProcess(void) {
    return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-1));
}

BOOL WINAPI CloseHandle(HANDLE handle) {
    const bool fails = CallFails("CloseHandle");
    const DWORD fault = GetLastError();
    const bool closed = IsPseudoHandle(handle) || CloseHere(handle);
    return fails ? Fail(fault) : closed;
}

BOOL WINAPI DuplicateHandle(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess, HANDLE* target, DWORD access,
                            BOOL inherit, DWORD options) {
    if (CallFails("DuplicateHandle"))
        return FALSE;
    if (sourceProcess != GetCurrentProcess() || (target && targetProcess != GetCurrentProcess()))
        return Fail(ERROR_INVALID_HANDLE);
    PinnedObject object(source);
    if (!object)
        return FALSE;
    const bool duplicated = !target || Duplicate(object, target, access, inherit != FALSE, options);
    if (options & DUPLICATE_CLOSE_SOURCE)
        object.CloseHandle();
    return duplicated;
}

BOOL WINAPI GetHandleInformation(HANDLE handle, LPDWORD flags) {
    if (CallFails("GetHandleInformation"))
        return FALSE;
    PinnedObject object(handle);
    if (!object)
        return FALSE;
    *flags = object.Flags().load(std::memory_order_relaxed) & kHandleFlags;
    return TRUE;
}

BOOL WINAPI SetHandleInformation(HANDLE handle, DWORD mask, DWORD flags) {
    if (CallFails("SetHandleInformation"))
        return FALSE;
    PinnedObject object(handle);
    if (!object)
        return FALSE;
    if (mask & ~kHandleFlags)
        return Fail(ERROR_INVALID_PARAMETER);
    object.Flags().fetch_and(~mask, std::memory_order_relaxed);
    object.Flags().fetch_or(flags & mask, std::memory_order_relaxed);
    if (mask & HANDLE_FLAG_INHERIT)
        object.Shared()->SetInheritable(flags & HANDLE_FLAG_INHERIT);
    return TRUE;
}
