#include "imaging/ToolkitModule.h"

#include <kelcore/imaging/toolkit.h>

#include <string>

namespace kel {
namespace {

struct RegisteredPath {
    char text[256] = {};

    // The last byte stays 0 whatever is registered.
    bool Read() {
        HKEY key = nullptr;
        const std::string name = std::string("Software\\Classes\\CLSID\\") + toolkit::kControlClassText;
        if (RegOpenKeyA(HKEY_LOCAL_MACHINE, name.c_str(), &key) != ERROR_SUCCESS)
            return false;
        LONG size = sizeof text - 1;
        const bool isRead = RegQueryValueA(key, "InprocServer32", text, &size) == ERROR_SUCCESS;
        RegCloseKey(key);
        return isRead;
    }
};

} // namespace

ToolkitModule ToolkitModule::Registered() {
    RegisteredPath path;
    return ToolkitModule(path.Read() ? path.text : toolkit::kModuleName);
}

ToolkitModule ToolkitModule::ByName() {
    return ToolkitModule(toolkit::kModuleName);
}

ToolkitModule::ToolkitModule(const char* path) : m_module(LoadLibraryA(path)) {}

ToolkitModule::~ToolkitModule() {
    if (m_module)
        FreeLibrary(m_module);
}

} // namespace kel
