#include "platform/kernel/FullPath.h"

#include "platform/kernel/Faults.h"
#include "platform/kernel/HostPath.h"
#include "platform/kernel/HostText.h"
#include "platform/kernel/LastError.h"

#include <algorithm>
#include <climits>
#include <kelcore/platform/paths.h>
#include <unistd.h>

namespace kel::platform {
namespace {

std::size_t ComponentEnd(std::string_view path, std::size_t from) {
    while (from < path.size() && !IsSeparator(path[from]))
        ++from;
    return from;
}

void AppendPlain(std::string& text, std::string_view part) {
    const std::size_t start = text.size();
    text += part;
    std::replace(text.begin() + static_cast<std::ptrdiff_t>(start), text.end(), '/', '\\');
}

// A full path under construction: the part that ".." cannot leave, and what follows it.
class Builder {
public:
    explicit Builder(std::string& full) : m_full(full) { m_full.clear(); }

    // Writes what stands before the components, and takes it off the path.
    bool Begin(std::string_view& path) {
        if (path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1]))
            BeginDoubleSeparator(path);
        else if (!path.empty() && IsSeparator(path[0]))
            m_full = "C:\\";
        else if (path.size() >= 2 && path[1] == ':')
            return BeginDrive(path);
        else
            return BeginCurrent();
        m_floor = m_full.size();
        return true;
    }

    void Append(std::string_view path) {
        const bool open = !path.empty() && IsSeparator(path.back());
        for (std::size_t at = 0; at < path.size();) {
            const std::size_t end = ComponentEnd(path, at);
            AppendComponent(path.substr(at, end - at), end == path.size());
            at = end + 1;
        }
        if (open)
            Separate();
        else
            DropTail();
    }

private:
    void BeginDoubleSeparator(std::string_view& path) {
        std::size_t end = 4;
        if (!HasVerbatimPrefix(path)) {
            end = ComponentEnd(path, 2);                              // the server
            end = ComponentEnd(path, std::min(end + 1, path.size())); // the share
            end = std::min(end + 1, path.size());
        } else if (path.size() >= 7 && path[5] == ':' && IsSeparator(path[6])) {
            end = 7;
        }
        AppendPlain(m_full, path.substr(0, end));
        path.remove_prefix(end);
    }

    bool BeginDrive(std::string_view& path) {
        const std::string_view drive = path.substr(0, 2);
        path.remove_prefix(2);
        if ((path.empty() || !IsSeparator(path[0])) && (drive[0] | 0x20) == 'c')
            return BeginCurrent();
        m_full = drive;
        m_full += '\\';
        m_floor = m_full.size();
        return true;
    }

    bool BeginCurrent() {
        m_floor = 3;
        return CurrentFolder(m_full);
    }

    void AppendComponent(std::string_view name, bool last) {
        if (name.empty() || name == ".")
            return;
        if (name == "..") {
            m_full.erase(std::max(m_full.rfind('\\'), m_floor));
            return;
        }
        Separate();
        // A last name of nothing but dots and spaces vanishes whole, and leaves its separator.
        if (!last || name.find_first_not_of(" .") != std::string_view::npos)
            m_full += DropTrailing(name, last);
    }

    void Separate() {
        if (m_full.back() != '\\')
            m_full += '\\';
    }

    // A "." or ".." at the end makes a folder's name the last one, whose dots and spaces do not count.
    void DropTail() { m_full.resize(std::max(m_full.find_last_not_of(" .") + 1, m_floor)); }

    std::string& m_full;
    std::size_t m_floor = 0; // the length of the root, its separator included
};

// The last component in the buffer; a server or a device alone is none.
LPSTR FilePart(LPSTR full, DWORD length) {
    const std::size_t slash = std::string_view(full, length).rfind('\\');
    return slash < 2 || slash + 1 == length ? nullptr : full + slash + 1;
}

} // namespace

bool CurrentFolder(std::string& path) {
    char host[PATH_MAX];
    if (getcwd(host, sizeof host) == nullptr)
        return FailFromHost();
    path = Win32FromHostPath(host);
    return true;
}

bool FullPath(std::string_view path, std::string& full) {
    if (path.find_first_not_of(' ') == std::string_view::npos)
        return Fail(ERROR_INVALID_NAME);
    if (IsNullDevice(path)) {
        full = "\\\\.\\" + std::string(path.substr(0, 3));
        return true;
    }
    Builder builder(full);
    if (!builder.Begin(path))
        return false;
    builder.Append(path);
    return true;
}

} // namespace kel::platform

using namespace kel::platform;

DWORD WINAPI GetFullPathNameA(LPCSTR path, DWORD size, LPSTR buffer, LPSTR* filePart) {
    if (CallFails("GetFullPathNameA"))
        return 0;
    std::string full;
    const std::string utf8 = Utf8FromAnsi(path == nullptr ? "" : path);
    if (!FullPath(utf8, full))
        return 0;
    const DWORD length = GiveText(AnsiFromUtf8(full), buffer, size);
    if (filePart != nullptr && buffer != nullptr && length < size)
        *filePart = IsNullDevice(utf8) ? nullptr : FilePart(buffer, length);
    return length;
}

DWORD WINAPI GetCurrentDirectoryA(DWORD size, LPSTR buffer) {
    std::string path;
    if (CallFails("GetCurrentDirectoryA") || !CurrentFolder(path))
        return 0;
    return GiveText(AnsiFromUtf8(path), buffer, size);
}
