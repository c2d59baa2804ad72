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

/// A key that is open for writing, made if it is missing.
class WritableKey {
public:
    explicit WritableKey(const std::string& path)
        : m_error(RegCreateKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), /*reserved*/ 0, /*class*/ nullptr,
                                  REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, /*security*/ nullptr, &m_key,
                                  /*disposition*/ nullptr)) {}
    WritableKey(const WritableKey&) = delete;
    WritableKey& operator=(const WritableKey&) = delete;
    ~WritableKey() {
        if (m_error == ERROR_SUCCESS)
            RegCloseKey(m_key);
    }

    /// @param name null for the default value. The first error is kept and ends all writing.
    void Set(const char* name, const char* text) {
        if (m_error == ERROR_SUCCESS)
            m_result = RegSetValueExA(m_key, name, /*reserved*/ 0, REG_SZ, reinterpret_cast<const BYTE*>(text),
                                      static_cast<DWORD>(std::strlen(text) + 1));
    }

    LONG Result() const { return m_error != ERROR_SUCCESS ? m_error : m_result; }

private:
    HKEY m_key = nullptr;
    const LONG m_error;
    LONG m_result = ERROR_SUCCESS;
};

LONG SetDefault(const std::string& key, const char* text) {
    WritableKey opened(key);
    opened.Set(/*default*/ nullptr, text);
    return opened.Result();
}

LONG SetThreading(const std::string& key) {
    WritableKey opened(key);
    opened.Set("ThreadingModel", "Both");
    return opened.Result();
}

LONG Delete(const std::string& key) {
    const LONG error = RegDeleteKeyA(HKEY_LOCAL_MACHINE, key.c_str());
    return error == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : error;
}

} // namespace

LONG Register(const char* path) {
    const std::string server = ClassKey() + "\\" + kServer;
    LONG error = SetDefault(ClassKey(), kTitle);
    if (error == ERROR_SUCCESS)
        error = SetDefault(server, path);
    return error == ERROR_SUCCESS ? SetThreading(server) : error;
}

LONG Unregister() {
    const LONG error = Delete(ClassKey() + "\\" + kServer);
    return error == ERROR_SUCCESS ? Delete(ClassKey()) : error;
}

} // namespace kel::toolkit
