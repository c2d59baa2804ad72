// A native module of the tests: what runs in it, and how it finds itself.

#include <kelcore/export.h>
#include <kelcore/platform.h>

namespace {

int g_data = 0;

/// Asks for its module while that is loaded and unloaded.
struct Curious {
    Curious() { Ask(); }
    ~Curious() { Ask(); }

    static void Ask() {
        char path[MAX_PATH];
        HMODULE own = nullptr;
        if (!GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                                reinterpret_cast<LPCSTR>(&g_data), &own) ||
            GetModuleFileNameA(own, path, sizeof path) == 0)
            __builtin_trap();
    }
} g_curious;

} // namespace

extern "C" KELCORE_API int Answer() {
    return 42;
}

extern "C" KELCORE_API HMODULE OwnHandle() {
    HMODULE own = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCSTR>(&g_data), &own);
    return own;
}
