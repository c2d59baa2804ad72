#include "platform/registry/RegistryText.h"

#include "platform/kernel/HostText.h"
#include "platform/registry/Sqlite.h"

#include <kelcore/platform/codepages.h>
#include <kelcore/platform/errors.h>
#include <kelcore/platform/registry.h>

#include <algorithm>
#include <cstring>

namespace kel::platform {
namespace {

char UpperAscii(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 0x20) : c;
}

std::u16string Units(std::string_view ansi) {
    std::u16string units(ansi.size(), u'\0');
    const int size = static_cast<int>(ansi.size());
    units.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_ACP, /*flags*/ 0, ansi.data(), size, reinterpret_cast<WCHAR*>(units.data()), size)));
    return units;
}

std::string Utf8(const std::u16string& units) {
    std::string text(units.size() * 3, '\0');
    text.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_UTF8, /*flags*/ 0, reinterpret_cast<const WCHAR*>(units.data()),
                            static_cast<int>(units.size()), text.data(), static_cast<int>(text.size()),
                            /*default*/ nullptr, /*used*/ nullptr)));
    return text;
}

std::string Folded(std::string_view text) {
    if (!IsAscii(text))
        return Utf8(FoldName(text));
    std::string folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), UpperAscii);
    return folded;
}

} // namespace

std::string HiveText(std::string_view ansi) {
    return IsAscii(ansi) ? std::string(ansi) : Utf8(Units(ansi));
}

std::size_t CountUnits(std::string_view text) {
    std::size_t units = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        units += (byte & 0xC0) != 0x80; // begins a character,
        units += byte >= 0xF0;          // of two units
    }
    return units;
}

bool IsTextType(DWORD type) {
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

std::string NarrowData(DWORD type, std::string_view data) {
    return IsTextType(type) ? AnsiFromUtf8(data) : std::string(data);
}

Name MakeName(std::string text) {
    std::string folded = Folded(text);
    return {std::move(text), std::move(folded)};
}

FoldedName::FoldedName(LPCSTR name) {
    std::size_t size = 0;
    for (; name != nullptr && name[size] != '\0'; ++size) {
        if (size == m_room.size() || static_cast<unsigned char>(name[size]) >= 0x80) {
            m_long = Folded(HiveText(name));
            m_view = m_long;
            return;
        }
        m_room[size] = UpperAscii(name[size]);
    }
    m_view = {m_room.data(), size};
}

std::vector<Name> SplitKeyPath(LPCSTR path) {
    std::vector<Name> names;
    const std::string text = HiveText(path);
    if (!text.empty() && text[0] == '\\')
        throw RegistryFailure{ERROR_BAD_PATHNAME};
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\\', begin), text.size());
        if (end != begin)
            names.push_back(MakeName(text.substr(begin, end - begin)));
        begin = end + 1;
    }
    return names;
}

} // namespace kel::platform
