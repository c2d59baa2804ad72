#include "platform/kernel/HostNames.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace kel::platform {
namespace {

using Byte = unsigned char;

bool IsContinuation(char c) {
    return (static_cast<Byte>(c) & 0xC0) == 0x80;
}

constexpr bool IsUnspeakable(Byte byte) {
    return byte < 0x20 || std::string_view("\\:*?\"<>|").find(static_cast<char>(byte)) != std::string_view::npos;
}

// Bytes that stand for themselves, as nearly all do: a search asks for every byte of every name.
constexpr auto kPlain = [] {
    std::array<bool, 256> plain{};
    for (unsigned byte = 0; byte < 0x80; ++byte)
        plain[byte] = !IsUnspeakable(static_cast<Byte>(byte));
    return plain;
}();

// Only what the mapping produces is mapped back; U+F02E must not turn into a dot and climb out of a folder.
bool IsMapped(Byte byte) {
    return byte >= 0x80 || (byte != 0 && IsUnspeakable(byte));
}

void AppendMapped(std::string& text, Byte byte) {
    text += '\xEF';
    text += static_cast<char>(0x80 | byte >> 6);
    text += static_cast<char>(0x80 | (byte & 0x3F));
}

// Whether the three bytes at the front of the text are U+F000 plus a mapped byte, which is then given back.
bool ReadMapped(std::string_view text, Byte& byte) {
    if (text.size() < 3 || text[0] != '\xEF' || (static_cast<Byte>(text[1]) & 0xFC) != 0x80 || !IsContinuation(text[2]))
        return false;
    byte = static_cast<Byte>(static_cast<Byte>(text[1]) << 6 | (static_cast<Byte>(text[2]) & 0x3F));
    return IsMapped(byte);
}

// The length of the well-formed UTF-8 sequence at the front of the text, 0 if there is none (Unicode, table 3-7).
std::size_t WellFormed(std::string_view text) {
    const Byte lead = static_cast<Byte>(text[0]);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length > text.size() ||
        !std::all_of(text.begin() + 1, text.begin() + std::max<std::size_t>(length, 1), IsContinuation))
        return 0;
    const Byte second = length > 2 ? static_cast<Byte>(text[1]) : 0;
    const bool outOfRange = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                            (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
    return outOfRange ? 0 : length;
}

bool IsPlain(char c) {
    return kPlain[static_cast<Byte>(c)];
}

// What a Win32 directory entry holds, in bytes.
constexpr std::size_t kLongestName = 259;

std::uint64_t HashOf(std::string_view name) {
    std::uint64_t hash = 0xCBF29CE484222325u; // FNV-1a
    for (const char c : name)
        hash = (hash ^ static_cast<Byte>(c)) * 0x100000001B3u;
    return hash;
}

// The beginning of a name that is too long, U+F000, and a number that tells it from others that begin alike.
std::string Alias(std::string_view mapped, std::string_view name) {
    char number[20];
    const int digits =
        std::snprintf(number, sizeof number, "\xEF\x80\x80%016llx", static_cast<unsigned long long>(HashOf(name)));
    std::size_t kept = kLongestName - static_cast<std::size_t>(digits);
    while (IsContinuation(mapped[kept]))
        --kept;
    return std::string(mapped.substr(0, kept)) + number;
}

std::string Map(std::string_view name) {
    const auto odd = std::find_if_not(name.begin(), name.end(), IsPlain);
    std::string result(name.begin(), odd);
    name.remove_prefix(result.size());
    while (!name.empty()) {
        std::size_t length = WellFormed(name);
        Byte mapped;
        if (length == 0 || IsUnspeakable(static_cast<Byte>(name[0])) || ReadMapped(name, mapped)) {
            AppendMapped(result, static_cast<Byte>(name[0]));
            length = 1;
        } else {
            result += name.substr(0, length);
        }
        name.remove_prefix(length);
    }
    return result;
}

} // namespace

std::string HostNameToWin32(std::string_view name) {
    std::string mapped = Map(name);
    return mapped.size() <= kLongestName ? mapped : Alias(mapped, name);
}

std::string_view HostNameToWin32(std::string_view name, std::string& room) {
    if (name.size() <= kLongestName && std::all_of(name.begin(), name.end(), IsPlain))
        return name;
    room = HostNameToWin32(name);
    return room;
}

std::string Win32NameToHost(std::string_view name) {
    std::string result;
    for (std::size_t at = 0; at < name.size();) {
        const std::size_t next = std::min(name.find('\xEF', at), name.size());
        result += name.substr(at, next - at);
        at = next;
        Byte mapped;
        if (ReadMapped(name.substr(at), mapped)) {
            result += static_cast<char>(mapped);
            at += 3;
        } else if (at < name.size()) {
            result += name[at++];
        }
    }
    return result;
}

} // namespace kel::platform
