#include "platform/registry/KeyHandles.h"
#include "platform/registry/RegistryAsks.h"

#include <algorithm>
#include <cstring>

namespace kel::platform {
namespace {

struct ValueAtAsk : Ask {
    DWORD index;
    LPSTR name;
    LPDWORD nameSize;
    LPDWORD type;
    BYTE* data;
    LPDWORD dataSize;

    ValueAtAsk(DWORD at, LPSTR nameBuffer, LPDWORD nameRoom, LPDWORD typeResult, BYTE* buffer, LPDWORD room)
        : index(at), name(nameBuffer), nameSize(nameRoom), type(typeResult), data(buffer), dataSize(room) {}

    bool Knows(KeyNode& node) const {
        return node.KnowsAllValues() &&
               (data == nullptr || index >= node.Values().size() || node.Values()[index]->hasData);
    }
    void Load(Session& session, std::int64_t key) const {
        session.LoadValues(key);
        const KeyNode& node = session.Key(key);
        if (data != nullptr && index < node.Values().size())
            session.LoadData(*node.Values()[index]);
    }
    LONG Use(KeyNode& node) const {
        if (index >= node.Values().size())
            return ERROR_NO_MORE_ITEMS;
        const Value& value = *node.Values()[index];
        if (const LONG code = GiveData(value, type, data, dataSize))
            return code;
        return GiveName(value.name, name, nameSize);
    }
    void Release(KeyNode& node) const {
        if (index < node.Values().size())
            ReleaseLarge(*node.Values()[index]);
    }
};

struct SubkeyAtAsk : Ask {
    DWORD index;
    LPSTR name;
    LPDWORD nameSize;
    LPSTR className;
    LPDWORD classSize;
    std::int64_t* subkey;

    SubkeyAtAsk(DWORD at, LPSTR nameBuffer, LPDWORD nameRoom, LPSTR classBuffer, LPDWORD classRoom, std::int64_t* id)
        : index(at), name(nameBuffer), nameSize(nameRoom), className(classBuffer), classSize(classRoom), subkey(id) {}

    bool Knows(KeyNode& node) const { return node.Subkeys().has_value(); }
    void Load(Session& session, std::int64_t key) const { session.LoadSubkeys(key); }
    LONG Use(KeyNode& node) const {
        if (index >= node.Subkeys()->size())
            return ERROR_NO_MORE_ITEMS;
        const Subkey& found = (*node.Subkeys())[index];
        *subkey = found.id;
        if (*nameSize <= found.name.size())
            return ERROR_MORE_DATA;
        if (className != nullptr)
            if (const LONG code = GiveName(found.className, className, classSize))
                return code;
        return GiveName(found.name, name, nameSize);
    }
};

struct LastWriteAsk : Ask {
    LPFILETIME time;

    explicit LastWriteAsk(LPFILETIME result) : time(result) {}
    bool Knows(KeyNode& node) const { return node.lastWrite.has_value(); }
    void Load(Session& session, std::int64_t key) const { session.LoadLastWrite(key); }
    LONG Use(KeyNode& node) const {
        const auto written = static_cast<std::uint64_t>(*node.lastWrite);
        *time = {static_cast<DWORD>(written), static_cast<DWORD>(written >> 32)};
        return ERROR_SUCCESS;
    }
};

// Results that are not wanted are null.
struct KeyFacts {
    LPDWORD subkeys;
    LPDWORD longestSubkey;
    LPDWORD longestClass;
    LPDWORD values;
    LPDWORD longestValueName;
    LPDWORD longestData;
    LPSTR className;
    LPDWORD classSize;
};

void Give(LPDWORD result, std::size_t value) {
    if (result != nullptr)
        *result = static_cast<DWORD>(value);
}

struct FactsAsk : Ask {
    KeyFacts facts;

    explicit FactsAsk(const KeyFacts& wanted) : facts(wanted) {}

    bool WantsSubkeys() const { return facts.subkeys || facts.longestSubkey || facts.longestClass; }
    bool WantsValues() const { return facts.values || facts.longestValueName || facts.longestData; }

    bool Knows(KeyNode& node) const {
        return (!WantsSubkeys() || node.Subkeys()) && (!WantsValues() || node.KnowsAllValues());
    }
    void Load(Session& session, std::int64_t key) const {
        if (WantsSubkeys())
            session.LoadSubkeys(key);
        if (WantsValues())
            session.LoadValues(key);
    }
    LONG Use(KeyNode& node) const {
        if (WantsSubkeys())
            TellSubkeys(*node.Subkeys());
        if (WantsValues())
            TellValues(node.Values());
        return facts.classSize == nullptr ? ERROR_SUCCESS : TellClass(node.className);
    }

private:
    void TellSubkeys(const std::vector<Subkey>& subkeys) const {
        std::size_t name = 0;
        std::size_t className = 0;
        for (const Subkey& subkey : subkeys) {
            name = std::max(name, subkey.name.size());
            className = std::max(className, subkey.className.size());
        }
        Give(facts.subkeys, subkeys.size());
        Give(facts.longestSubkey, name);
        Give(facts.longestClass, className);
    }

    void TellValues(const std::vector<Value*>& values) const {
        std::size_t name = 0;
        DWORD data = 0;
        for (const Value* value : values) {
            name = std::max(name, value->name.size());
            data = std::max(data, value->size);
        }
        Give(facts.values, values.size());
        Give(facts.longestValueName, name);
        Give(facts.longestData, data);
    }

    LONG TellClass(const std::string& name) const {
        const LONG code = facts.className == nullptr ? ERROR_SUCCESS : GiveName(name, facts.className, facts.classSize);
        Give(facts.classSize, name.size());
        return code;
    }
};

} // namespace

LONG GiveName(const std::string& text, LPSTR buffer, LPDWORD size) {
    if (*size <= text.size())
        return ERROR_MORE_DATA;
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    *size = static_cast<DWORD>(text.size());
    return ERROR_SUCCESS;
}

} // namespace kel::platform

using namespace kel::platform;

LONG WINAPI RegQueryInfoKeyA(HKEY key, LPSTR className, LPDWORD classSize, LPDWORD, LPDWORD subkeys,
                             LPDWORD longestSubkey, LPDWORD longestClass, LPDWORD values, LPDWORD longestValueName,
                             LPDWORD longestData, LPDWORD securityDescriptor, LPFILETIME lastWrite) {
    return RegistryCall("RegQueryInfoKeyA", [&]() -> LONG {
        if (className != nullptr && classSize == nullptr)
            return ERROR_INVALID_PARAMETER;
        const UsedKey used(key);
        if (const LONG code = used.Check(KEY_QUERY_VALUE))
            return code;
        const KeyFacts wanted = {subkeys,          longestSubkey, longestClass, values,
                                 longestValueName, longestData,   className,    classSize};
        if (const LONG code = Registry::Get().Look(used.Id(), FactsAsk(wanted)))
            return code;
        Give(securityDescriptor, 0);
        return lastWrite == nullptr ? ERROR_SUCCESS : Registry::Get().Look(used.Id(), LastWriteAsk(lastWrite));
    });
}

LONG WINAPI RegEnumKeyExA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved, LPSTR className,
                          LPDWORD classSize, LPFILETIME lastWrite) {
    return RegistryCall("RegEnumKeyExA", [&]() -> LONG {
        if (name == nullptr || nameSize == nullptr || reserved != nullptr || (className && !classSize))
            return ERROR_INVALID_PARAMETER;
        const UsedKey used(key);
        if (const LONG code = used.Check(KEY_ENUMERATE_SUB_KEYS))
            return code;
        std::int64_t subkey = 0;
        const SubkeyAtAsk ask(index, name, nameSize, className, classSize, &subkey);
        const LONG code = Registry::Get().Look(used.Id(), ask);
        if (code != ERROR_SUCCESS || lastWrite == nullptr)
            return code;
        return Registry::Get().Look(subkey, LastWriteAsk(lastWrite));
    });
}

LONG WINAPI RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved, LPDWORD type,
                          BYTE* data, LPDWORD dataSize) {
    return RegistryCall("RegEnumValueA", [&]() -> LONG {
        if (name == nullptr || nameSize == nullptr || reserved != nullptr || (data != nullptr && dataSize == nullptr))
            return ERROR_INVALID_PARAMETER;
        const UsedKey used(key);
        if (const LONG code = used.Check(KEY_QUERY_VALUE))
            return code;
        return Registry::Get().Look(used.Id(), ValueAtAsk(index, name, nameSize, type, data, dataSize));
    });
}
