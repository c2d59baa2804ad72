#pragma once

#include <doctest/doctest.h>
#include <kelcore/platform.h>

#include <string>

/// A key that is open for a scope.
class Key {
public:
    explicit Key(HKEY key = nullptr) : m_key(key) {}
    Key(HKEY below, const char* name, REGSAM access = KEY_ALL_ACCESS) { m_code = Open(below, name, access); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() { RegCloseKey(m_key); }

    operator HKEY() const { return m_key; }
    LONG Code() const { return m_code; }

private:
    LONG Open(HKEY below, const char* name, REGSAM access) {
        return RegCreateKeyExA(below, name, 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr, &m_key, nullptr);
    }

    HKEY m_key = nullptr;
    LONG m_code = 0;
};

/// Deletes a key and all that is below it.
inline LONG DeleteTree(HKEY below, const char* name) {
    HKEY key = nullptr;
    if (const LONG code = RegOpenKeyExA(below, name, 0, KEY_ALL_ACCESS, &key))
        return code;
    char subkey[1024];
    for (DWORD size = sizeof subkey; RegEnumKeyExA(key, 0, subkey, &size, nullptr, nullptr, nullptr, nullptr) == 0;
         size = sizeof subkey)
        if (DeleteTree(key, subkey) != 0)
            break;
    RegCloseKey(key);
    return RegDeleteKeyA(below, name);
}

/// An empty key for one test, which goes with all that is below it.
class EmptyKey : public Key {
public:
    static constexpr char kPath[] = "Software\\KelCore tests";

    EmptyKey() : Key((DeleteTree(HKEY_CURRENT_USER, kPath), HKEY_CURRENT_USER), kPath) { REQUIRE(Code() == 0); }
    ~EmptyKey() { DeleteTree(HKEY_CURRENT_USER, kPath); }
};

inline LONG SetBytes(HKEY key, const char* name, const std::string& bytes, DWORD type = REG_BINARY) {
    return RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                          static_cast<DWORD>(bytes.size()));
}

/// The data of a value; "<code>" if it cannot be read.
inline std::string GetBytes(HKEY key, const char* name, DWORD* type = nullptr) {
    DWORD size = 0;
    LONG code = RegQueryValueExA(key, name, nullptr, nullptr, nullptr, &size);
    std::string bytes(size, '\0');
    if (code == 0)
        code = RegQueryValueExA(key, name, nullptr, type, reinterpret_cast<BYTE*>(bytes.data()), &size);
    CHECK(bytes.size() == (code == 0 ? size : bytes.size()));
    return code == 0 ? bytes : "<" + std::to_string(code) + ">";
}

/// The name at an index of the enumeration of values or subkeys; "<code>" for a failure.
inline std::string ValueAt(HKEY key, DWORD index) {
    char name[1024];
    DWORD size = sizeof name;
    const LONG code = RegEnumValueA(key, index, name, &size, nullptr, nullptr, nullptr, nullptr);
    return code == 0 ? std::string(name, size) : "<" + std::to_string(code) + ">";
}

inline std::string SubkeyAt(HKEY key, DWORD index) {
    char name[1024];
    DWORD size = sizeof name;
    const LONG code = RegEnumKeyExA(key, index, name, &size, nullptr, nullptr, nullptr, nullptr);
    return code == 0 ? std::string(name, size) : "<" + std::to_string(code) + ">";
}
