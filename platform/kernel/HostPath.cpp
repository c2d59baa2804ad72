#include "platform/kernel/HostPath.h"

#include "platform/kernel/HostNames.h"
#include "platform/kernel/HostText.h"
#include "platform/kernel/LastError.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <kelcore/platform/errors.h>
#include <memory>
#include <sys/stat.h>

namespace kel::platform {
namespace {

bool EqualsIgnoringCase(std::string_view text, std::string_view lower) {
    return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                      [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a | 0x20 : a) == b; });
}

// Takes off what stands before the components and says whether they start from the root.
DWORD TakePrefix(std::string_view& path, bool& absolute) {
    const bool verbatim = HasVerbatimPrefix(path);
    if (verbatim)
        path.remove_prefix(4);
    else if (path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1]))
        return ERROR_BAD_NETPATH;
    if (verbatim && EqualsIgnoringCase(path.substr(0, 4), "unc\\"))
        return ERROR_BAD_NETPATH;
    const bool drive = path.size() >= 2 && path[1] == ':';
    if (path.empty() || (drive ? (path[0] | 0x20) != 'c' : verbatim))
        return ERROR_PATH_NOT_FOUND;
    if (drive)
        path.remove_prefix(2);
    absolute = verbatim || (!path.empty() && IsSeparator(path[0]));
    return 0;
}

bool IsForbidden(char c) {
    return static_cast<unsigned char>(c) < 0x20 || std::string_view(":*?\"<>|").find(c) != std::string_view::npos;
}

// Goes up one folder in the text. Above the start of a relative path the host's own ".." is needed.
void AppendParent(std::string& host, bool absolute) {
    const std::size_t slash = host.rfind('/');
    const std::string_view last = std::string_view(host).substr(slash == std::string::npos ? 0 : slash + 1);
    if (absolute)
        host.erase(std::max<std::size_t>(slash, 1));
    else if (last.empty())
        host = "..";
    else if (last == "..")
        host += "/..";
    else
        host.erase(slash == std::string::npos ? 0 : slash);
}

DWORD AppendComponent(std::string& host, std::string_view name, bool absolute) {
    if (name.empty() || name == ".")
        return 0;
    if (name == "..") {
        AppendParent(host, absolute);
        return 0;
    }
    if (std::any_of(name.begin(), name.end(), IsForbidden))
        return ERROR_INVALID_NAME;
    if (!host.empty() && host.back() != '/')
        host += '/';
    if (name.find('\xEF') == std::string_view::npos)
        host += name;
    else
        host += Win32NameToHost(name);
    return 0;
}

DWORD AppendComponents(std::string& host, std::string_view path, bool absolute) {
    while (!path.empty()) {
        const auto end = std::find_if(path.begin(), path.end(), IsSeparator);
        const std::string_view name = path.substr(0, static_cast<std::size_t>(end - path.begin()));
        if (const DWORD error = AppendComponent(host, name, absolute))
            return error;
        path.remove_prefix(std::min(name.size() + 1, path.size()));
    }
    return 0;
}

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

bool IsLetter(char c) {
    return (c | 0x20) >= 'a' && (c | 0x20) <= 'z';
}

// Compares many names with one without regard to case.
class NameInAnyCase {
public:
    // Goes by the Win32 form, which keeps malformed bytes apart that a conversion to UTF-16 would make alike.
    explicit NameInAnyCase(std::string_view name)
        : m_name(name), m_isAscii(IsAscii(name)), m_folded(FoldName(HostNameToWin32(name))) {}

    bool Matches(std::string_view found) const {
        // Nearly all names are ASCII: those need no conversion.
        if (m_isAscii && IsAscii(found))
            return EqualAscii(found);
        return FoldName(HostNameToWin32(found)) == m_folded;
    }

private:
    bool EqualAscii(std::string_view found) const {
        return std::equal(found.begin(), found.end(), m_name.begin(), m_name.end(),
                          [](char a, char b) { return a == b || ((a ^ b) == 0x20 && IsLetter(a)); });
    }

    const std::string_view m_name;
    const bool m_isAscii;
    const std::u16string m_folded;
};

// The entry of the folder whose name differs from the wanted one in case only; "" if there is none. Of several, the one
// that sorts first is taken, so that the answer does not depend on the host's order.
std::string FindIgnoringCase(const std::string& folder, std::string_view name) {
    std::string best;
    if (!HasLetters(name))
        return best;
    const std::unique_ptr<DIR, CloseFolder> open(opendir(folder.empty() ? "." : folder.c_str()));
    if (!open)
        return best;
    const NameInAnyCase wanted(name);
    while (const dirent* entry = readdir(open.get())) {
        const std::string_view found = entry->d_name;
        if ((best.empty() || found < best) && wanted.Matches(found))
            best = found;
    }
    return best;
}

// Walks down a path of which some component is not there under exactly its name.
class Matcher {
public:
    Matcher(std::string& host, struct stat& existing) : m_path(host), m_existing(existing) {
        m_done = m_path.starts_with('/') ? "/" : "";
    }

    DWORD Match() {
        StartAtParent();
        while (m_rest < m_path.size()) {
            const std::size_t end = std::min(m_path.find('/', m_rest), m_path.size());
            const bool last = end == m_path.size();
            if (const DWORD error = Step(std::string_view(m_path).substr(m_rest, end - m_rest), last))
                return error;
            m_rest = end + 1;
        }
        m_path = std::move(m_done);
        return 0;
    }

private:
    // Most often only the last name is missing or differs; its folder then needs no walk of its own.
    void StartAtParent() {
        m_rest = m_done.size();
        const std::size_t slash = m_path.rfind('/');
        if (slash == std::string::npos || slash < m_rest)
            return;
        const std::string parent = m_path.substr(0, slash);
        if (stat(parent.c_str(), &m_existing) != 0 || !S_ISDIR(m_existing.st_mode))
            return;
        m_done = parent + '/';
        m_rest = slash + 1;
    }

    DWORD Step(std::string_view name, bool last) {
        const std::string_view shorter = DropTrailing(name, last);
        if (!Take(name) && (shorter == name || !Take(shorter))) {
            if (m_error != ENOENT)
                return m_error == ENOTDIR ? ERROR_PATH_NOT_FOUND : ErrorFromHost(m_error);
            if (!last)
                return ERROR_PATH_NOT_FOUND;
            m_done += shorter;
            m_existing = {};
        }
        if (!last)
            m_done += '/';
        return 0;
    }

    bool Take(std::string_view name) {
        return TakeExact(name) || (m_error == ENOENT && TakeExact(FindIgnoringCase(m_done, name)));
    }

    bool TakeExact(std::string_view name) {
        if (name.empty())
            return false;
        const std::string path = m_done + std::string(name);
        m_error = lstat(path.c_str(), &m_existing) == 0 ? 0 : errno;
        if (m_error == 0)
            m_done = path;
        return m_error == 0;
    }

    std::string& m_path;     // as translated
    struct stat& m_existing; // of what was met last
    std::string m_done;      // as found, ready for a name to be appended
    std::size_t m_rest = 0;  // where the part of m_path begins that is not yet in m_done
    int m_error = ENOENT;    // why the last name was not taken
};

// A path that is taken as it is written names something new, provided that its folder is there.
DWORD CheckMissing(const std::string& host, struct stat& existing) {
    const std::string folder = host.substr(0, host.rfind('/') + 1);
    const bool found = stat(folder.c_str(), &existing) == 0 && S_ISDIR(existing.st_mode);
    existing = {};
    return found ? 0 : ERROR_PATH_NOT_FOUND;
}

// A file's name followed by a separator names nothing; a folder's does. A missing name keeps the separator, so that the
// host creates folders under it but no files.
DWORD CheckTrailingSeparator(std::string& host, const struct stat& existing) {
    if (existing.st_mode == 0) {
        host += '/';
        return 0;
    }
    struct stat target;
    const bool folder = stat(host.c_str(), &target) == 0 && S_ISDIR(target.st_mode);
    return folder ? 0 : ERROR_INVALID_NAME;
}

} // namespace

bool IsNullDevice(std::string_view path) {
    return EqualsIgnoringCase(path, "nul") || EqualsIgnoringCase(path, "nul:");
}

bool HasVerbatimPrefix(std::string_view path) {
    return path.size() >= 4 && IsSeparator(path[0]) && IsSeparator(path[1]) && (path[2] == '?' || path[2] == '.') &&
           IsSeparator(path[3]);
}

std::string_view DropTrailing(std::string_view name, bool last) {
    if (last) {
        const std::size_t end = name.find_last_not_of(" .");
        return end == std::string_view::npos ? name : name.substr(0, end + 1);
    }
    const bool oneDot = name.size() >= 2 && name.back() == '.' && name[name.size() - 2] != '.';
    return oneDot ? name.substr(0, name.size() - 1) : name;
}

DWORD TranslateHostPath(std::string_view utf8, std::string& host) {
    if (IsNullDevice(HasVerbatimPrefix(utf8) ? utf8.substr(4) : utf8)) {
        host = "/dev/null";
        return 0;
    }
    bool absolute = false;
    if (const DWORD error = TakePrefix(utf8, absolute))
        return error;
    host = absolute ? "/" : "";
    if (const DWORD error = AppendComponents(host, utf8, absolute))
        return error;
    if (host.empty())
        host = ".";
    return 0;
}

DWORD ResolveHostPath(std::string_view utf8, std::string& host, struct stat& existing) {
    if (const DWORD error = TranslateHostPath(utf8, host))
        return error;
    if (lstat(host.c_str(), &existing) != 0) {
        if (errno != ENOENT && errno != ENOTDIR)
            return ErrorFromHost(errno);
        const bool exactly = HasVerbatimPrefix(utf8);
        if (const DWORD error = exactly ? CheckMissing(host, existing) : Matcher(host, existing).Match())
            return error;
    }
    return IsSeparator(utf8.back()) ? CheckTrailingSeparator(host, existing) : 0;
}

DWORD ResolveHostPath(const char* path, std::string& host) {
    struct stat existing;
    if (path == nullptr)
        return ERROR_PATH_NOT_FOUND;
    return ResolveHostPath(Utf8FromAnsi(path), host, existing);
}

std::string Win32FromHostPath(std::string_view host) {
    std::string path = "C:";
    do {
        host.remove_prefix(1);
        const std::string_view name = host.substr(0, host.find('/'));
        path += '\\';
        path += HostNameToWin32(name);
        host.remove_prefix(name.size());
    } while (!host.empty());
    return path;
}

} // namespace kel::platform
