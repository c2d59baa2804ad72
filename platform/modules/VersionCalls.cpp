#include "platform/kernel/Faults.h"
#include "platform/modules/Guarded.h"
#include "platform/modules/Module.h"
#include "platform/modules/ModuleSearch.h"
#include "platform/modules/VersionRecord.h"

#include <kelcore/platform/languages.h>
#include <kelcore/platform/resources.h>

using namespace kel::platform;

namespace {

/// The file of exactly that name, which a program here has without an extension, or else the one that a module's name
/// stands for.
DWORD FindVersionedFile(const std::string& name, std::string& hostPath) {
    const ModuleName exact((name + '.').c_str());
    return FindModuleFile(exact, hostPath) == NO_ERROR ? NO_ERROR : FindModuleFile(ModuleName(name.c_str()), hostPath);
}

/// The version record of a file.
class VersionOfFile {
public:
    /// Empty with the last error set if there is none.
    explicit VersionOfFile(LPCSTR name) {
        if (name == nullptr)
            Fail(ERROR_INVALID_PARAMETER);
        else if (*name == '\0')
            Fail(ERROR_BAD_PATHNAME);
        else if (Open(name) && (m_size = VersionBlockSize(m_record)) == 0)
            Fail(ERROR_INVALID_DATA);
    }

    std::size_t BlockSize() const { return m_size; }

    bool Fill(LPVOID block, DWORD size) const {
        if (m_size == 0)
            return false;
        FillVersionBlock(m_record, static_cast<char*>(block), size);
        return true;
    }

private:
    bool Open(LPCSTR name) {
        std::string hostPath;
        if (const DWORD error = FindVersionedFile(name, hostPath))
            return Fail(error);
        m_resources = ReadResourcesOf(hostPath);
        if (!m_resources)
            return GetLastError() == ERROR_BAD_EXE_FORMAT && Fail(ERROR_RESOURCE_DATA_NOT_FOUND);
        ResourceName type;
        ResourceName first;
        ParseResourceName(RT_VERSION, type);
        ParseResourceName(MAKEINTRESOURCEA(1), first);
        const ResourceTree& tree = m_resources->Tree();
        const char* record = tree.Find(type, first, LANG_NEUTRAL);
        return record && tree.Data(record, m_record);
    }

    std::unique_ptr<Resources> m_resources;
    Bytes m_record;
    std::size_t m_size = 0;
};

} // namespace

DWORD WINAPI GetFileVersionInfoSizeA(LPCSTR file, LPDWORD ignored) {
    if (ignored)
        *ignored = 0;
    if (CallFails("GetFileVersionInfoSizeA"))
        return 0;
    return Guarded([&] { return static_cast<DWORD>(VersionOfFile(file).BlockSize()); });
}

BOOL WINAPI GetFileVersionInfoA(LPCSTR file, DWORD, DWORD size, LPVOID block) {
    if (CallFails("GetFileVersionInfoA"))
        return FALSE;
    return Guarded([&] { return VersionOfFile(file).Fill(block, size); });
}

BOOL WINAPI VerQueryValueA(LPCVOID block, LPCSTR path, LPVOID* value, UINT* length) {
    if (CallFails("VerQueryValueA"))
        return FALSE;
    return Guarded([&] { return QueryVersionBlock(static_cast<const char*>(block), path, value, length); });
}
