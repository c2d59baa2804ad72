#pragma once

#include <kelcore/platform.h>

/// The module that @p address, of one of its objects or functions, belongs to: how a module finds its own instance on
/// every system. Null if the address is in no module.
inline HINSTANCE InstanceOf(const void* address) {
    HINSTANCE instance = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const char*>(address), &instance);
    return instance;
}
