#include <kelcore/platform/files.h>

#include "platform/kernel/HostText.h"
#include "platform/registry/HiveSchema.h"
#include "platform/registry/KeyChanges.h"
#include "platform/registry/KeyHandles.h"
#include "platform/registry/RegistryAsks.h"

#include <algorithm>
#include <cstring>
#include <strings.h>
#include <unistd.h>

namespace kel::platform {
namespace {

constexpr std::size_t kLongestName = 255; // in 16-bit units
constexpr std::size_t kDeepest = 512;

struct ChildAsk : Ask {
    std::string_view folded;
    std::int64_t* child;

    ChildAsk(std::string_view name, std::int64_t* result) : folded(name), child(result) {}
    bool Knows(KeyNode& node) const { return node.Child(folded).has_value(); }
    void Load(Session& session, std::int64_t key) const { session.Child(key, folded); }
    LONG Use(KeyNode& node) const {
        *child = *node.Child(folded);
        return *child == 0 ? ERROR_FILE_NOT_FOUND : ERROR_SUCCESS;
    }
};

bool CanBeMade(const UsedKey& below, const std::vector<Name>& path) {
    return below.Depth() + path.size() <= kDeepest && std::all_of(path.begin(), path.end(), [](const Name& name) {
               return CountUnits(name.text) <= kLongestName;
           });
}

// A machine's name may have two backslashes in front.
bool IsThisMachine(LPCSTR name) {
    if (name == nullptr || *name == '\0')
        return true;
    char own[256] = "";
    gethostname(own, sizeof own - 1);
    return strcasecmp(std::string_view(name).substr(0, 2) == "\\\\" ? name + 2 : name, own) == 0;
}

LONG CreateKey(const UsedKey& used, CreateKeyChange& change) {
    if (!CanBeMade(used, change.path))
        return ERROR_INVALID_PARAMETER;
    std::int64_t found = 0;
    const LONG code = FindKey(used.Id(), change.path, found);
    if (code == ERROR_FILE_NOT_FOUND)
        return Registry::Get().Commit(change);
    change.id = found;
    return code;
}

LONG OpenPath(HKEY key, LPCSTR subkey, REGSAM access, PHKEY result) {
    const UsedKey used(key);
    if (const LONG code = used.Check(/*rights*/ 0))
        return code;
    const std::vector<Name> path = SplitKeyPath(subkey == nullptr ? "" : subkey);
    std::int64_t found = 0;
    if (const LONG code = FindKey(used.Id(), path, found))
        return code;
    *result = path.empty() && used.IsPredefined() ? key : OpenKeyHandle(found, used.Depth() + path.size(), access);
    return ERROR_SUCCESS;
}

} // namespace

LONG FindKey(std::int64_t key, const std::vector<Name>& path, std::int64_t& found) {
    found = key;
    LONG code = path.empty() ? Registry::Get().Look(key, Ask()) : ERROR_SUCCESS;
    for (std::size_t i = 0; i < path.size() && code == ERROR_SUCCESS; ++i) {
        code = Registry::Get().Look(found, ChildAsk(path[i].folded, &found));
        if (code == ERROR_KEY_DELETED && i != 0)
            code = ERROR_FILE_NOT_FOUND; // it went while the path was followed
    }
    return code;
}

} // namespace kel::platform

using namespace kel::platform;

LONG WINAPI RegOpenKeyExA(HKEY key, LPCSTR subkey, DWORD, REGSAM access, PHKEY result) {
    return RegistryCall("RegOpenKeyExA", [&]() -> LONG {
        if (result == nullptr)
            return ERROR_INVALID_PARAMETER;
        *result = nullptr;
        return OpenPath(key, subkey, access, result);
    });
}

LONG WINAPI RegOpenKeyA(HKEY key, LPCSTR subkey, PHKEY result) {
    return RegistryCall("RegOpenKeyA", [&]() -> LONG {
        if (result == nullptr)
            return ERROR_INVALID_PARAMETER;
        *result = nullptr;
        if (subkey != nullptr && *subkey != '\0')
            return OpenPath(key, subkey, MAXIMUM_ALLOWED, result);
        if (const LONG code = UsedKey(key).Check(/*rights*/ 0))
            return code;
        *result = key;
        return ERROR_SUCCESS;
    });
}

LONG WINAPI RegCreateKeyExA(HKEY key, LPCSTR subkey, DWORD reserved, LPSTR className, DWORD options, REGSAM access,
                            const SECURITY_ATTRIBUTES*, PHKEY result, LPDWORD disposition) {
    return RegistryCall("RegCreateKeyExA", [&]() -> LONG {
        if (result == nullptr || reserved != 0 || (options & ~static_cast<DWORD>(REG_OPTION_VOLATILE)))
            return ERROR_INVALID_PARAMETER;
        if (subkey == nullptr)
            return ERROR_BADKEY;
        const UsedKey used(key);
        if (const LONG code = used.Check(/*rights*/ 0))
            return code;
        CreateKeyChange change(used.Id(), SplitKeyPath(subkey));
        change.className = HiveText(className == nullptr ? "" : className);
        change.isVolatile = options & REG_OPTION_VOLATILE;
        if (const LONG code = CreateKey(used, change))
            return code;
        *result = OpenKeyHandle(change.id, used.Depth() + change.path.size(), access);
        if (disposition != nullptr)
            *disposition = change.isNew ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
        return ERROR_SUCCESS;
    });
}

LONG WINAPI RegCloseKey(HKEY key) {
    const bool fails = CallFails("RegCloseKey");
    const DWORD fault = GetLastError();
    const bool closed = PredefinedKey(key) != 0 || key == HKEY_PERFORMANCE_DATA || [&] {
        Pinned<OpenKey> open(static_cast<HANDLE>(key));
        return open && open.CloseHandle();
    }();
    if (fails)
        return static_cast<LONG>(fault);
    return closed ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

LONG WINAPI RegDeleteKeyA(HKEY key, LPCSTR subkey) {
    return RegistryCall("RegDeleteKeyA", [&]() -> LONG {
        const UsedKey used(key);
        if (const LONG code = used.Check(/*rights*/ 0))
            return code;
        if (subkey == nullptr)
            return ERROR_INVALID_PARAMETER;
        DeleteKeyChange change(used.Id(), SplitKeyPath(subkey));
        return Registry::Get().Commit(change);
    });
}

LONG WINAPI RegConnectRegistryA(LPCSTR machine, HKEY key, PHKEY result) {
    return RegistryCall("RegConnectRegistryA", [&]() -> LONG {
        if (result == nullptr)
            return ERROR_INVALID_PARAMETER;
        if (PredefinedKey(key) == 0)
            return ERROR_INVALID_HANDLE;
        if (!IsThisMachine(machine))
            return ERROR_BAD_NETPATH;
        *result = key;
        return ERROR_SUCCESS;
    });
}

LONG WINAPI RegFlushKey(HKEY key) {
    return RegistryCall("RegFlushKey", [&]() -> LONG {
        const UsedKey used(key);
        if (const LONG code = used.Check(/*rights*/ 0))
            return code;
        if (const LONG code = Registry::Get().Look(used.Id(), Ask()))
            return code;
        return Registry::Get().Flush();
    });
}

LONG WINAPI RegSetValueA(HKEY key, LPCSTR subkey, DWORD type, LPCSTR data, DWORD) {
    return RegistryCall("RegSetValueA", [&]() -> LONG {
        if (type != REG_SZ || data == nullptr)
            return ERROR_INVALID_PARAMETER;
        const UsedKey used(key);
        const std::vector<Name> path = SplitKeyPath(subkey == nullptr ? "" : subkey);
        if (const LONG code = used.Check(path.empty() ? KEY_SET_VALUE : 0))
            return code;
        if (!CanBeMade(used, path))
            return ERROR_INVALID_PARAMETER;
        DefaultValueChange change(used.Id(), path, std::string_view(data, std::strlen(data) + 1));
        return Registry::Get().Commit(change);
    });
}
