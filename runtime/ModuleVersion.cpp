#include "runtime/ModuleVersion.h"

#include <kelcore/runtime/modules.h>

#include <vector>

namespace {

// The version record of the file at @p path; empty when there is none.
std::vector<char> VersionBlock(const char* path) {
    DWORD ignored = 0;
    std::vector<char> block(GetFileVersionInfoSizeA(path, &ignored));
    if (!block.empty() && !GetFileVersionInfoA(path, /*ignored*/ 0, static_cast<DWORD>(block.size()), block.data()))
        block.clear();
    return block;
}

void ReadVersion(const char* path, unsigned long& ms, unsigned long& ls) {
    ms = 0;
    ls = 0;
    const std::vector<char> block = VersionBlock(path);
    void* found = nullptr;
    UINT size = 0;
    if (block.empty() || !VerQueryValueA(block.data(), "\\", &found, &size) || size < sizeof(VS_FIXEDFILEINFO))
        return;
    const auto& version = *static_cast<const VS_FIXEDFILEINFO*>(found);
    ms = version.dwProductVersionMS;
    ls = version.dwProductVersionLS;
}

} // namespace

void ModuleBase::GetModuleVersion(unsigned long& ms, unsigned long& ls) {
    GetModuleVersion(m_hInstance, ms, ls);
}

void ModuleBase::GetModuleVersion(HINSTANCE instance, unsigned long& ms, unsigned long& ls) {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(instance, path, sizeof path);
    path[sizeof path - 1] = '\0';
    ReadVersion(path, ms, ls);
}

void ModuleBase::GetModuleVersion(const String& path, unsigned long& ms, unsigned long& ls) {
    ReadVersion(StdW2A(path).c_str(), ms, ls);
}

String ModuleBase::GetProcessInformation() {
    String text;
    for (ModuleBase* const module : GetModules()) {
        kel::ModuleVersion version;
        module->GetModuleVersion(version.ms, version.ls);
        String line;
        line.Format(u"    %i.%i.%i.%i\r\n"_w, version.Major(), version.Minor(), version.Build(), version.Revision());
        text += module->GetPath() + line;
    }
    return text + u"\r\n"_w;
}
