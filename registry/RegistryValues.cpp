#include <kelcore/registry.h>

#include "registry/ValueData.h"

#include <kelcore/text.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <type_traits>
#include <utility>

namespace {

/// Reads the value @p name into @p data, which stays empty when there is no value of the type @p accepted.
///
/// The second query may meet another value than the first. What it answers does not count, but the size does, which it
/// lowers for a shorter value; for a longer one it asks for more room than there is.
/// @return the code of the first query.
long ReadValue(HKEY key, const WideString& name, DWORD accepted, NarrowString& data) {
    const NarrowString narrow = StdW2A(name);
    DWORD type = 0;
    DWORD size = 0;
    const long error = RegQueryValueExA(key, narrow.c_str(), /*reserved*/ nullptr, &type, /*data*/ nullptr, &size);
    if (error != ERROR_SUCCESS || type != accepted || size == 0)
        return error;
    data.resize(size);
    RegQueryValueExA(key, narrow.c_str(), /*reserved*/ nullptr, /*type*/ nullptr, reinterpret_cast<BYTE*>(data.data()),
                     &size);
    data.resize(std::min<std::size_t>(size, data.size()));
    return error;
}

/// @p size is what a registry can hold: it refuses values of 4 GiB.
long WriteValue(HKEY key, const WideString& name, DWORD type, const void* data, std::size_t size) {
    const auto count = static_cast<DWORD>(std::min<std::size_t>(size, 0xFFFFFFFF));
    return RegSetValueExA(key, StdW2A(name).c_str(), /*reserved*/ 0, type, static_cast<const BYTE*>(data), count);
}

/// Stores a text with its terminator.
long WriteText(HKEY key, const WideString& name, const NarrowString& text) {
    return WriteValue(key, name, REG_SZ, text.c_str(), text.size() + 1);
}

long WriteDword(HKEY key, const WideString& name, std::uint32_t value) {
    const unsigned char bytes[] = {static_cast<unsigned char>(value), static_cast<unsigned char>(value >> 8),
                                   static_cast<unsigned char>(value >> 16), static_cast<unsigned char>(value >> 24)};
    return WriteValue(key, name, REG_DWORD, bytes, sizeof bytes);
}

template <class Integer>
long ReadInteger(HKEY key, const WideString& name, Integer& value) {
    NarrowString data;
    const long error = ReadValue(key, name, REG_DWORD, data);
    if (data.empty())
        return error;
    // A signed target that is wider than the 32 bits keeps their sign.
    using Stored = std::conditional_t<std::is_signed_v<Integer>, std::int32_t, std::uint32_t>;
    value = static_cast<Integer>(static_cast<Stored>(kel::FirstDword(data)));
    return error;
}

/// The number at the beginning of a text. strtod knows the decimal point of the current locale alone, while the text
/// may have been written under another one; a point is taken under each.
double NumberAtBegin(NarrowString text) {
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    const std::size_t point = text.find('.');
    if (point == NarrowString::npos || static_cast<std::size_t>(end - text.c_str()) > point)
        return number;
    char half[16]; // 0, the locale's point, 5
    const int length = std::snprintf(half, sizeof half, "%.1f", 0.5);
    text.replace(point, 1, half + 1, static_cast<std::size_t>(length - 2));
    return std::strtod(text.c_str(), nullptr);
}

} // namespace

long RegistryKey::GetString(const WideString& name, WideString& value) {
    NarrowString data;
    const long error = ReadValue(Handle(), name, REG_SZ, data);
    if (data.empty())
        return error;
    data.pop_back(); // the terminator
    value = StdA2W(data);
    return error;
}

long RegistryKey::SetString(const WideString& name, const WideString& value) {
    return WriteText(Handle(), name, StdW2A(value));
}

long RegistryKey::GetInteger(const WideString& name, unsigned long& value) {
    return ReadInteger(Handle(), name, value);
}

long RegistryKey::GetInteger(const WideString& name, int& value) {
    return ReadInteger(Handle(), name, value);
}

long RegistryKey::GetInteger(const WideString& name, unsigned int& value) {
    return ReadInteger(Handle(), name, value);
}

long RegistryKey::GetInteger(const WideString& name, long& value) {
    return ReadInteger(Handle(), name, value);
}

long RegistryKey::GetInteger(const WideString& name, short& value) {
    return ReadInteger(Handle(), name, value);
}

long RegistryKey::GetInteger(const WideString& name, unsigned short& value) {
    return ReadInteger(Handle(), name, value);
}

long RegistryKey::SetInteger(const WideString& name, unsigned long value) {
    return WriteDword(Handle(), name, static_cast<std::uint32_t>(value));
}

long RegistryKey::GetBoolean(const WideString& name, bool& value) {
    NarrowString data;
    const long error = ReadValue(Handle(), name, REG_DWORD, data);
    if (!data.empty())
        value = kel::FirstDword(data) == 1;
    return error;
}

long RegistryKey::SetBoolean(const WideString& name, bool value) {
    return WriteDword(Handle(), name, value ? 1 : 0);
}

long RegistryKey::GetInt64(const WideString& name, __int64& value) {
    NarrowString data;
    const long error = ReadValue(Handle(), name, REG_SZ, data);
    if (!data.empty())
        value = _atoi64(data.c_str());
    return error;
}

long RegistryKey::SetInt64(const WideString& name, __int64 value) {
    char text[24];
    return WriteText(Handle(), name, _i64toa(value, text, /*radix*/ 10));
}

long RegistryKey::GetFloat(const WideString& name, double& value) {
    WideString text;
    const long error = GetString(name, text);
    if (error == ERROR_SUCCESS)
        value = NumberAtBegin(StdW2A(text));
    return error;
}

long RegistryKey::SetFloat(const WideString& name, double value) {
    return SetString(name, String(value));
}

long RegistryKey::GetBinary(const WideString& name, NarrowString& data) {
    NarrowString read;
    const long error = ReadValue(Handle(), name, REG_BINARY, read);
    if (!read.empty())
        data = std::move(read);
    return error;
}

long RegistryKey::SetBinary(const WideString& name, const unsigned char* bytes, unsigned int count) {
    return WriteValue(Handle(), name, REG_BINARY, bytes, count);
}

long RegistryKey::SetBinary(const WideString& name, const NarrowString& data) {
    return WriteValue(Handle(), name, REG_BINARY, data.data(), data.size());
}
