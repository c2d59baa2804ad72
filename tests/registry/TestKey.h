#pragma once

#include "tests/support/RegistryKeys.h"
#include "tests/support/Text.h"

#include <kelcore/registry.h>

/// An empty key for one test, open past the class, to which it opens and stores what the class shall see.
struct TestKey : EmptyKey {
    /// The same key through the class, with a handle of its own.
    RegistryKey Open(unsigned long access = KEY_ALL_ACCESS) const {
        return RegistryKey(HKEY_CURRENT_USER).OpenSubkey(StdA2W(kPath), access);
    }

    void Store(const char* name, DWORD type, const std::string& data) const {
        REQUIRE(SetBytes(*this, name, data, type) == ERROR_SUCCESS);
    }

    /// The value's type in decimal, a colon and its bytes.
    std::string Stored(const char* name) const {
        DWORD type = 0;
        const std::string bytes = GetBytes(*this, name, &type);
        return std::to_string(type) + ":" + bytes;
    }
};
