#include "platform/registry/KeyChanges.h"
#include "platform/registry/KeyHandles.h"
#include "platform/registry/RegistryAsks.h"
#include "platform/registry/RegistryText.h"

#include <cstring>
#include <kelcore/platform/codepages.h>

namespace kel::platform {
namespace {

constexpr std::size_t kLongestName = 16383;   // in 16-bit units
constexpr DWORD kLargestData = 1'000'000'000; // what SQLite takes for one field

struct ValueAsk : Ask {
    std::string_view folded;
    LPDWORD type;
    BYTE* data;
    LPDWORD size;

    ValueAsk(std::string_view name, LPDWORD typeResult, BYTE* buffer, LPDWORD bufferSize)
        : folded(name), type(typeResult), data(buffer), size(bufferSize) {}

    bool Knows(KeyNode& node) const {
        const Value* const value = node.Find(folded);
        return value != nullptr && (value->id == 0 || value->hasData || data == nullptr);
    }
    void Load(Session& session, std::int64_t key) const {
        Value& value = session.ValueOf(key, folded);
        if (value.id != 0 && data != nullptr)
            session.LoadData(value);
    }
    LONG Use(KeyNode& node) const {
        const Value& value = *node.Find(folded);
        return value.id == 0 ? ERROR_FILE_NOT_FOUND : GiveData(value, type, data, size);
    }
    void Release(KeyNode& node) const { ReleaseLarge(*node.Find(folded)); }
};

// Whether a value is known to be what it is to be set to.
struct SameAsk : Ask {
    const SetValueChange& change;

    explicit SameAsk(const SetValueChange& wanted) : change(wanted) {}
    bool Knows(KeyNode& node) const {
        const Value* const value = node.Find(change.name.folded);
        return value != nullptr && value->hasData && value->type == change.type && value->data == change.data;
    }
};

// What a key without a default value has.
Value EmptyText() {
    Value value{};
    value.type = REG_SZ;
    value.data.assign(1, '\0');
    value.size = 1;
    return value;
}

// Setting a value to what it is changes nothing, not even the time of the last change. A page that lacks characters may
// show two texts alike.
bool IsSetAlready(const SetValueChange& change) {
    const bool isExact = !IsTextType(change.type) || GetACP() == CP_UTF8;
    return isExact && Registry::Get().LookInMemory(change.key, SameAsk(change)) == ERROR_SUCCESS;
}

} // namespace

LONG GiveData(const Value& value, LPDWORD type, BYTE* data, LPDWORD size) {
    if (type != nullptr)
        *type = value.type;
    if (size == nullptr)
        return ERROR_SUCCESS;
    const DWORD room = *size;
    *size = value.size;
    if (data == nullptr)
        return ERROR_SUCCESS;
    if (room < value.size)
        return ERROR_MORE_DATA;
    std::memcpy(data, value.data.data(), value.size);
    // A text that was written without its terminator gets one where there is room.
    if (room > value.size && IsTextType(value.type) && (value.size == 0 || value.data.back() != '\0'))
        data[value.size] = 0;
    return ERROR_SUCCESS;
}

} // namespace kel::platform

using namespace kel::platform;

LONG WINAPI RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, BYTE* data, LPDWORD dataSize) {
    return RegistryCall("RegQueryValueExA", [&]() -> LONG {
        if (reserved != nullptr || (data != nullptr && dataSize == nullptr))
            return ERROR_INVALID_PARAMETER;
        const UsedKey used(key);
        if (const LONG code = used.Check(KEY_QUERY_VALUE))
            return code;
        const FoldedName folded(name);
        return Registry::Get().Look(used.Id(), ValueAsk(folded.View(), type, data, dataSize));
    });
}

LONG WINAPI RegQueryValueA(HKEY key, LPCSTR subkey, LPSTR data, PLONG dataSize) {
    return RegistryCall("RegQueryValueA", [&]() -> LONG {
        if (data != nullptr && dataSize == nullptr)
            return ERROR_INVALID_PARAMETER;
        const UsedKey used(key);
        const std::vector<Name> path = SplitKeyPath(subkey == nullptr ? "" : subkey);
        if (const LONG code = used.Check(path.empty() ? KEY_QUERY_VALUE : 0))
            return code;
        std::int64_t found = 0;
        if (const LONG code = FindKey(used.Id(), path, found))
            return code;
        const FoldedName unnamed(nullptr);
        BYTE* const room = reinterpret_cast<BYTE*>(data);
        LPDWORD const size = reinterpret_cast<LPDWORD>(dataSize);
        const LONG code = Registry::Get().Look(found, ValueAsk(unnamed.View(), /*type*/ nullptr, room, size));
        return code == ERROR_FILE_NOT_FOUND ? GiveData(EmptyText(), /*type*/ nullptr, room, size) : code;
    });
}

LONG WINAPI RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD dataSize) {
    return RegistryCall("RegSetValueExA", [&]() -> LONG {
        if (reserved != 0)
            return ERROR_INVALID_PARAMETER;
        if (data == nullptr && dataSize != 0)
            return ERROR_NOACCESS;
        const UsedKey used(key);
        if (const LONG code = used.Check(KEY_SET_VALUE))
            return code;
        SetValueChange change{};
        change.name = MakeName(HiveText(name == nullptr ? "" : name));
        if (CountUnits(change.name.text) > kLongestName)
            return ERROR_INVALID_PARAMETER;
        if (dataSize > kLargestData)
            return ERROR_NO_SYSTEM_RESOURCES;
        change.key = used.Id();
        change.type = type;
        change.data = {reinterpret_cast<const char*>(data), dataSize};
        return IsSetAlready(change) ? ERROR_SUCCESS : Registry::Get().Commit(change);
    });
}

LONG WINAPI RegDeleteValueA(HKEY key, LPCSTR name) {
    return RegistryCall("RegDeleteValueA", [&]() -> LONG {
        const UsedKey used(key);
        if (const LONG code = used.Check(KEY_SET_VALUE))
            return code;
        const FoldedName folded(name);
        DeleteValueChange change{};
        change.key = used.Id();
        change.folded = folded.View();
        return Registry::Get().Commit(change);
    });
}
