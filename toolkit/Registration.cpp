#include "toolkit/Registration.h"

#include <kelcore/imaging/toolkit.h>

#include <cstring>
#include <string>

namespace kel::toolkit {
namespace {

const char kTitle[] = "KelCore imaging toolkit";
const char kServer[] = "InprocServer32";

std::string ClassKey() {
    return std::string("Software\\Classes\\CLSID\\") + kControlClassText;
}

/// Sets a text of a key, which is made if it is missing. @param name null for the default value.
LONG SetText(const std::string& key, const char* name, const char* text) {
    HKEY opened = nullptr;
    LONG error = RegCreateKeyExA(HKEY_LOCAL_MACHINE, key.c_str(), /*reserved*/ 0, /*class*/ nullptr,
                                 REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, /*security*/ nullptr, &opened,
                                 /*disposition*/ nullptr);
    if (error != ERROR_SUCCESS)
        return error;
    error = RegSetValueExA(opened, name, /*reserved*/ 0, REG_SZ, reinterpret_cast<const BYTE*>(text),
                           static_cast<DWORD>(std::strlen(text) + 1));
    RegCloseKey(opened);
    return error;
}

LONG Delete(const std::string& key) {
    const LONG error = RegDeleteKeyA(HKEY_LOCAL_MACHINE, key.c_str());
    return error == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : error;
}

} // namespace

LONG Register(const char* path) {
    const std::string server = ClassKey() + "\\" + kServer;
    LONG error = SetText(ClassKey(), /*default*/ nullptr, kTitle);
    if (error == ERROR_SUCCESS)
        error = SetText(server, /*default*/ nullptr, path);
    return error == ERROR_SUCCESS ? SetText(server, "ThreadingModel", "Both") : error;
}

LONG Unregister() {
    const LONG error = Delete(ClassKey() + "\\" + kServer);
    return error == ERROR_SUCCESS ? Delete(ClassKey()) : error;
}

} // namespace kel::toolkit
