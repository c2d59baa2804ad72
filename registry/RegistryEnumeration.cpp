#include <kelcore/registry.h>

#include "registry/ValueData.h"

#include <kelcore/text.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace {

/// What RegQueryInfoKeyA tells about the values of a key; lengths without terminators.
struct ValueFacts {
    DWORD count = 0;
    DWORD longestName = 0;
    DWORD longestData = 0;
};

long QueryValues(HKEY key, ValueFacts& facts) {
    return RegQueryInfoKeyA(key, /*class*/ nullptr, /*class size*/ nullptr, /*reserved*/ nullptr, /*subkeys*/ nullptr,
                            /*longest subkey*/ nullptr, /*longest class*/ nullptr, &facts.count, &facts.longestName,
                            &facts.longestData, /*security*/ nullptr, /*written*/ nullptr);
}

/// A buffer that calls fill: its size tells them the room, and is cut to what they report.
class CallBuffer {
public:
    explicit CallBuffer(std::size_t room) : m_bytes(room, '\0') {}

    char* Data() { return m_bytes.data(); }
    BYTE* Bytes() { return reinterpret_cast<BYTE*>(m_bytes.data()); }
    /// The room again; calls replace it by the size of what they wrote.
    DWORD* Offer() {
        m_size = static_cast<DWORD>(m_bytes.size());
        return &m_size;
    }
    /// What was written, in a text that keeps its memory from call to call.
    const NarrowString& Taken() { return m_taken.assign(m_bytes, 0, m_size); }

private:
    NarrowString m_bytes;
    NarrowString m_taken;
    DWORD m_size = 0;
};

long EnumValueName(HKEY key, DWORD index, CallBuffer& name) {
    return RegEnumValueA(key, index, name.Data(), name.Offer(), /*reserved*/ nullptr, /*type*/ nullptr,
                         /*data*/ nullptr, /*data size*/ nullptr);
}

/// Room for @p more entries. Lists that are appended to over and over still grow by doubling.
template <class Entry>
void MakeRoom(std::vector<Entry>& list, std::size_t more) {
    if (list.capacity() - list.size() < more)
        list.reserve(std::max(list.size() + more, 2 * list.capacity()));
}

/// Appends the name of every value of registry type @p type to @p names and what @p convert makes of its data to
/// @p values, in step even when there is no memory for more.
/// @return the code of the first call that fails.
template <class Value, class Convert>
long AppendValues(HKEY key, DWORD type, std::vector<WideString>& names, std::vector<Value>& values, Convert convert) {
    ValueFacts facts;
    long error = QueryValues(key, facts);
    if (error != ERROR_SUCCESS)
        return error;
    MakeRoom(names, facts.count);
    MakeRoom(values, facts.count);
    CallBuffer name(std::size_t{facts.longestName} + 1);
    CallBuffer data(std::size_t{facts.longestData} + 1);
    for (DWORD index = 0; index != facts.count; ++index) {
        DWORD found = 0;
        error = RegEnumValueA(key, index, name.Data(), name.Offer(), /*reserved*/ nullptr, &found, data.Bytes(),
                              data.Offer());
        if (error != ERROR_SUCCESS)
            return error;
        if (found != type)
            continue;
        Value value = convert(data.Taken());
        names.push_back(StdA2W(name.Taken()));
        values.push_back(std::move(value));
    }
    return ERROR_SUCCESS;
}

std::string_view WithoutTrailingNul(std::string_view text) {
    return text.substr(0, text.find_last_not_of('\0') + 1);
}

} // namespace

long RegistryKey::GetSubkeyNames(std::vector<WideString>& names) const {
    DWORD count = 0;
    DWORD longest = 0;
    long error = RegQueryInfoKeyA(Handle(), /*class*/ nullptr, /*class size*/ nullptr, /*reserved*/ nullptr, &count,
                                  &longest, /*longest class*/ nullptr, /*values*/ nullptr, /*longest name*/ nullptr,
                                  /*longest data*/ nullptr, /*security*/ nullptr, /*written*/ nullptr);
    if (error != ERROR_SUCCESS)
        return error;
    CallBuffer name(std::size_t{longest} + 1);
    for (DWORD index = 0; index != count; ++index) {
        error = RegEnumKeyExA(Handle(), index, name.Data(), name.Offer(), /*reserved*/ nullptr, /*class*/ nullptr,
                              /*class size*/ nullptr, /*written*/ nullptr);
        if (error != ERROR_SUCCESS)
            return error;
        names.push_back(StdA2W(name.Taken()));
    }
    return ERROR_SUCCESS;
}

long RegistryKey::GetTypedValues(unsigned long type, std::vector<WideString>& names, std::vector<NarrowString>& datas) {
    return AppendValues(Handle(), static_cast<DWORD>(type), names, datas, [type](const NarrowString& data) {
        return NarrowString(type == REG_SZ ? WithoutTrailingNul(data) : std::string_view(data));
    });
}

// The readers below convert as they go, so that no second list of all data is made.
long RegistryKey::GetAllStrings(std::vector<WideString>& names, std::vector<WideString>& values) {
    return AppendValues(Handle(), REG_SZ, names, values, StdA2W);
}

long RegistryKey::GetAllIntegers(std::vector<WideString>& names, std::vector<unsigned long>& values) {
    return AppendValues(Handle(), REG_DWORD, names, values, kel::FirstDword);
}

long RegistryKey::GetAllBinaries(std::vector<WideString>& names, std::vector<NarrowString>& datas) {
    return GetTypedValues(REG_BINARY, names, datas);
}

void RegistryKey::DeleteAllValues() {
    constexpr std::size_t kLongestName = 520;
    CallBuffer name(kLongestName);
    while (EnumValueName(Handle(), /*index*/ 0, name) == ERROR_SUCCESS) {
        if (RegDeleteValueA(Handle(), name.Data()) != ERROR_SUCCESS)
            return;
    }
}

long RegistryKey::DeleteMultipleValues(const WideString& pattern) {
    ValueFacts facts;
    long error = QueryValues(Handle(), facts);
    if (error != ERROR_SUCCESS)
        return error;
    CallBuffer name(std::size_t{facts.longestName} + 1);
    // The values that stay come first: a deleted one leaves its index to the next.
    for (DWORD visited = 0, kept = 0; visited != facts.count; ++visited) {
        error = EnumValueName(Handle(), kept, name);
        if (error != ERROR_SUCCESS)
            return error;
        if (!NameMatch(StdA2W(name.Taken()), pattern)) {
            ++kept;
            continue;
        }
        error = RegDeleteValueA(Handle(), name.Data());
        if (error != ERROR_SUCCESS)
            return error;
    }
    return ERROR_SUCCESS;
}
