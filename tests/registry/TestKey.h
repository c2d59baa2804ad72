#pragma once

#include "tests/support/Text.h"

#include <doctest/doctest.h>
#include <kelcore/registry.h>

#include <string>

/// An empty key for one test, removed with all that is in it; the raw handle is for looking past the class.
class TestKey {
public:
    TestKey() {
        Remove();
        REQUIRE(RegCreateKeyExA(HKEY_CURRENT_USER, kPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &m_raw, nullptr) ==
                ERROR_SUCCESS);
    }
    TestKey(const TestKey&) = delete;
    TestKey& operator=(const TestKey&) = delete;
    ~TestKey() {
        RegCloseKey(m_raw);
        Remove();
    }

    HKEY Raw() const { return m_raw; }

    /// The same key through the class, with a handle of its own.
    RegistryKey Open(unsigned long access = KEY_ALL_ACCESS) const {
        return RegistryKey(HKEY_CURRENT_USER).OpenSubkey(StdA2W(kPath), access);
    }

    void Store(const char* name, DWORD type, const std::string& data) const {
        REQUIRE(RegSetValueExA(m_raw, name, 0, type, reinterpret_cast<const BYTE*>(data.data()),
                               static_cast<DWORD>(data.size())) == ERROR_SUCCESS);
    }

    /// The value's type in decimal, a colon and its bytes; the error code for a missing one.
    std::string Stored(const char* name) const {
        char data[1000];
        DWORD size = sizeof data, type = 0;
        const LONG error = RegQueryValueExA(m_raw, name, nullptr, &type, reinterpret_cast<BYTE*>(data), &size);
        return error != ERROR_SUCCESS ? std::to_string(error) : std::to_string(type) + ":" + std::string(data, size);
    }

private:
    static constexpr char kPath[] = "Software\\KelCore registry tests";

    static void Remove() { Remove(HKEY_CURRENT_USER, kPath); }

    static bool Remove(HKEY parent, const char* name) {
        HKEY key = nullptr;
        RegOpenKeyExA(parent, name, 0, KEY_READ, &key);
        char below[256];
        for (DWORD size = sizeof below; RegEnumKeyExA(key, 0, below, &size, nullptr, nullptr, nullptr, nullptr) == 0;
             size = sizeof below) {
            if (!Remove(key, below))
                break;
        }
        RegCloseKey(key);
        return RegDeleteKeyA(parent, name) == ERROR_SUCCESS;
    }

    HKEY m_raw = nullptr;
};
