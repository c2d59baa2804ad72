// A native module of the tests, which finds itself at any time.

#include <kelcore/export.h>
#include <kelcore/platform.h>

extern "C" KELCORE_API HMODULE OwnHandle() {
    static int data = 0;
    HMODULE own = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCSTR>(&data), &own);
    return own;
}

namespace {

/// Asks for its module while that is loaded and unloaded.
struct Curious {
    Curious() { Ask(); }
    ~Curious() { Ask(); }

    static void Ask() {
        char path[MAX_PATH];
        if (GetModuleFileNameA(OwnHandle(), path, sizeof path) == 0 || !OwnHandle())
            __builtin_trap();
    }
} g_curious;

} // namespace
