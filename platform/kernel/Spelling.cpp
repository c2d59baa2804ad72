#include "platform/kernel/Attributes.h"
#include "platform/kernel/Faults.h"
#include "platform/kernel/HostNames.h"
#include "platform/kernel/HostPath.h"
#include "platform/kernel/HostText.h"
#include "platform/kernel/LastError.h"

#include <kelcore/platform/paths.h>
#include <sys/stat.h>

namespace kel::platform {
namespace {

// Where the components of a path begin: after a drive, after the prefix of a plain path.
std::size_t ComponentsStart(std::string_view path) {
    const std::size_t prefix = HasVerbatimPrefix(path) ? 4 : 0;
    return path.size() >= prefix + 2 && path[prefix + 1] == ':' ? prefix + 2 : prefix;
}

// The name that the thing at the end of @p path has on the host; @p written if it cannot be asked for.
std::string OwnName(std::string_view path, std::string_view written) {
    std::string host;
    struct stat existing;
    const bool found = ResolveHostPath(path, host, existing) == 0 && existing.st_mode != 0;
    return found ? HostNameToWin32(LastComponent(host)) : std::string(written);
}

std::string SpellComponents(std::string_view path) {
    std::size_t at = ComponentsStart(path);
    std::string spelled(path.substr(0, at));
    while (at < path.size()) {
        const std::size_t end = std::min(path.find_first_of("\\/", at), path.size());
        const std::string_view name = path.substr(at, end - at);
        const bool isName = !name.empty() && name != "." && name != "..";
        spelled += isName ? OwnName(path.substr(0, end), name) : std::string(name);
        spelled += path.substr(end, 1);
        at = end + 1;
    }
    return spelled;
}

bool SpellAsOnHost(std::string_view path, std::string& spelled) {
    std::string host;
    std::string written;
    struct stat existing;
    if (const DWORD error = ResolveHostPath(path, host, existing))
        return Fail(error);
    if (existing.st_mode == 0)
        return Fail(ERROR_FILE_NOT_FOUND);
    TranslateHostPath(path, written);
    spelled = written == host ? std::string(path) : SpellComponents(path);
    return true;
}

DWORD GiveSpelling(LPCSTR path, LPSTR buffer, DWORD size) {
    std::string spelled;
    return SpellAsOnHost(Utf8FromAnsi(path), spelled) ? GiveText(AnsiFromUtf8(spelled), buffer, size) : 0;
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

DWORD WINAPI GetShortPathNameA(LPCSTR path, LPSTR buffer, DWORD size) {
    if (CallFails("GetShortPathNameA"))
        return 0;
    if (path == nullptr || path[0] == '\0')
        return Fail(ERROR_BAD_PATHNAME);
    return GiveSpelling(path, buffer, size);
}

DWORD WINAPI GetLongPathNameA(LPCSTR path, LPSTR buffer, DWORD size) {
    if (CallFails("GetLongPathNameA"))
        return 0;
    if (path == nullptr)
        return Fail(ERROR_INVALID_PARAMETER);
    return GiveSpelling(path, buffer, size);
}
