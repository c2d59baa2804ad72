#include "platform/modules/ModuleSearch.h"

#include "platform/kernel/HostPath.h"
#include "platform/kernel/HostText.h"
#include "platform/kernel/LastError.h"
#include "platform/modules/ModuleTable.h"

#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace kel::platform {
namespace {

DWORD ResolveFile(std::string_view path, std::string& hostPath) {
    std::string found;
    struct stat facts;
    if (const DWORD error = ResolveHostPath(path, found, facts))
        return error;
    char resolved[PATH_MAX];
    if (realpath(found.c_str(), resolved) == nullptr || stat(resolved, &facts) == -1)
        return ErrorFromHost(errno);
    hostPath = resolved;
    return S_ISDIR(facts.st_mode) ? ERROR_ACCESS_DENIED : NO_ERROR;
}

std::string_view FileName(std::string_view hostPath) {
    return hostPath.substr(hostPath.rfind('/') + 1);
}

/// Whether a module is meant by a name: by its path, or by its file's name without regard to case.
class Wanted {
public:
    explicit Wanted(const ModuleName& name) {
        if (name.IsPlain())
            m_folded = FoldName(name.Text());
        else
            ResolveFile(name.Text(), m_hostPath);
    }

    bool Is(const std::string& hostPath) const {
        if (m_folded.empty())
            return hostPath == m_hostPath;
        const std::string_view file = FileName(hostPath);
        return FoldName(file) == m_folded;
    }

private:
    std::u16string m_folded;
    std::string m_hostPath;
};

} // namespace

ModuleName::ModuleName(LPCSTR name) : m_text(Utf8FromAnsi(name)) {
    const std::size_t file = m_text.find_last_of("\\/:") + 1;
    m_plain = file == 0;
    if (m_text.find_first_not_of('.', file) == std::string::npos)
        return;
    if (m_text.back() == '.')
        m_text.pop_back();
    else if (m_text.find('.', file) == std::string::npos)
        m_text += ".dll";
}

DWORD FindModuleFile(const ModuleName& name, std::string& hostPath) {
    if (!name.IsPlain())
        return ResolveFile(name.Text(), hostPath);
    const std::string& program = FindModule(/*handle*/ nullptr)->HostPath();
    const std::string folder = Win32FromHostPath(program.substr(0, std::max<std::size_t>(program.rfind('/'), 1)));
    if (ResolveFile(folder + "\\" + name.Text(), hostPath) == NO_ERROR)
        return NO_ERROR;
    return ResolveFile(name.Text(), hostPath);
}

std::shared_ptr<Module> FindLoadedModule(const ModuleName& name) {
    const Wanted wanted(name);
    const auto natives = NativeModules();
    for (const NativeModule& native : *natives)
        if (wanted.Is(native.hostPath))
            return ModuleTable::Get().Know(native);
    for (const std::shared_ptr<Module>& file : ModuleTable::Get().Files())
        if (wanted.Is(file->HostPath()))
            return file;
    return nullptr;
}

} // namespace kel::platform
