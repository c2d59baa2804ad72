#include "toolkit/OwnModule.h"

#include <kelcore/platform.h>

namespace kel::toolkit {
namespace {

const char kHere = 0; // an address in this module

HMODULE Own(DWORD flags) {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags, &kHere, &module);
    return module;
}

} // namespace

void StayLoaded() {
    static const HMODULE held = Own(/*counted*/ 0);
    static_cast<void>(held);
}

std::string OwnPath() {
    const HMODULE module = Own(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT);
    if (!module)
        return {}; // null would stand for the program
    for (std::string path(MAX_PATH, '\0');; path.resize(path.size() * 2)) {
        const DWORD length = GetModuleFileNameA(module, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
    }
}

} // namespace kel::toolkit
