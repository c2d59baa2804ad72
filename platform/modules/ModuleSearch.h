#pragma once

#include <kelcore/platform/base.h>

#include <memory>
#include <string>

namespace kel::platform {

class Module;

/// A module's name as a program gives it: in UTF-8, with the extension that is understood.
class ModuleName {
public:
    /// @param name in the ANSI code page, not null.
    explicit ModuleName(LPCSTR name);

    const std::string& Text() const { return m_text; }

    /// Whether it is a file's name alone, which is looked for.
    bool IsPlain() const { return m_plain; }

private:
    std::string m_text;
    bool m_plain;
};

/// The file that a name stands for: a path's own; a plain name's in the program's folder, then in the current one.
/// @param hostPath receives an absolute path, links resolved.
/// @return 0, or the Win32 error code: ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_ACCESS_DENIED for a folder …
DWORD FindModuleFile(const ModuleName& name, std::string& hostPath);

/// The loaded module that a name stands for; native ones come first. Null if there is none.
std::shared_ptr<Module> FindLoadedModule(const ModuleName& name);

} // namespace kel::platform
