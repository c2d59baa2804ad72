#pragma once

/// @file
/// What calls want to know of a key, see Registry::Look.

#include "platform/registry/Registry.h"

namespace kel::platform {

/// Nothing but that it exists.
struct Ask {
    bool Knows(KeyNode&) const { return true; }
    void Load(Session&, std::int64_t) const {}
    LONG Use(KeyNode&) const { return ERROR_SUCCESS; }
    void Release(KeyNode&) const {}
};

/// Forgets data that is too large to be remembered.
inline void ReleaseLarge(Value& value) {
    if (value.data.size() > RegistryCache::kLargeData) {
        std::string().swap(value.data);
        value.hasData = false;
    }
}

/// Copies a text with its terminator to a buffer of *@p size bytes. @return ERROR_MORE_DATA if it is too small.
LONG GiveName(const std::string& text, LPSTR buffer, LPDWORD size);

/// Gives out type, size and data of a value the way that RegQueryValueExA does.
LONG GiveData(const Value& value, LPDWORD type, BYTE* data, LPDWORD size);

/// The key at the end of a path below @p key, with ERROR_FILE_NOT_FOUND if there is none.
LONG FindKey(std::int64_t key, const std::vector<struct Name>& path, std::int64_t& found);

} // namespace kel::platform
