#include "platform/kernel/Faults.h"
#include "platform/kernel/HostPath.h"
#include "platform/kernel/HostText.h"

#include <kelcore/platform/paths.h>

namespace kel::platform {
namespace {

constexpr std::string_view kDots = "...";

bool IsLastSeparator(std::string_view path, std::size_t at) {
    const bool separator = IsSeparator(path[at]) || path[at] == ':';
    return separator && at + 1 < path.size() && !IsSeparator(path[at + 1]);
}

// Where the separator before the last component stands; none if the path is one component. Separators at the very end
// belong to the component. Goes by characters: the second byte of a double-byte one may look like a backslash.
std::size_t FindLastSeparator(std::string_view path) {
    std::size_t found = std::string_view::npos;
    for (std::size_t at = 0; at < path.size(); at += CharacterLength(path.substr(at)))
        if (IsLastSeparator(path, at))
            found = at;
    return found;
}

// "name" cut to "na...": the dots take what room there is first.
std::string CutName(std::string_view name, std::size_t room) {
    const std::size_t kept = room > kDots.size() ? room - kDots.size() : 0;
    return std::string(CutAtCharacter(name, kept)) + std::string(kDots.substr(0, room));
}

std::string Compact(std::string_view path, std::size_t room) {
    const std::size_t separator = FindLastSeparator(path);
    if (separator == std::string_view::npos)
        return CutName(path, room);
    const std::string_view tail = path.substr(separator);
    if (tail.size() + kDots.size() <= room)
        return CutName(path.substr(0, separator), room - tail.size()) + std::string(tail);
    const std::string lead = std::string(kDots) + tail[0];
    if (room <= lead.size())
        return lead.substr(0, room);
    return lead + CutName(tail.substr(1), room - lead.size());
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI PathCompactPathExA(LPSTR buffer, LPCSTR path, UINT size, DWORD) {
    if (CallFails("PathCompactPathExA") || buffer == nullptr || path == nullptr || size == 0)
        return FALSE;
    const std::string_view whole = path;
    GiveText(whole.size() + 1 < size ? std::string(whole) : Compact(whole, size - 1), buffer, size);
    return TRUE;
}
