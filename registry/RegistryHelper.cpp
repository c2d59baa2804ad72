#include <kelcore/registry.h>

#include <kelcore/text.h>

#include <memory>

namespace {

struct TaskMemoryFree {
    void operator()(void* memory) const { CoTaskMemFree(memory); }
};

/// Appends the key's path of the class @p clsid, with @p below behind it, to @p path.
/// @return false if the system cannot spell the identifier.
bool ClassKeyPath(const GUID& clsid, const String& below, WideString& path) {
    LPOLESTR spelled = nullptr;
    if (FAILED(StringFromCLSID(clsid, &spelled)))
        return false;
    const std::unique_ptr<void, TaskMemoryFree> owner(spelled);
    path = u"Software\\Classes\\CLSID\\"_w;
    path += reinterpret_cast<const unsigned short*>(spelled);
    path += below;
    return true;
}

String ServerKey() {
    return u"\\InprocServer32"_w;
}

/// Opens or makes the key @p below that of the class. @return one without a key on failure.
RegistryKey CreateClassKey(const GUID& clsid, const String& below, unsigned long access) {
    WideString path;
    if (!ClassKeyPath(clsid, below, path))
        return {};
    return RegistryKey(HKEY_LOCAL_MACHINE).CreateSubkey(path, REG_OPTION_NON_VOLATILE, access, nullptr);
}

bool DeleteClassKey(const GUID& clsid, const String& below) {
    WideString path;
    return ClassKeyPath(clsid, below, path) && RegistryKey(HKEY_LOCAL_MACHINE).DeleteSubkey(path) == ERROR_SUCCESS;
}

} // namespace

bool RegistryHelper::RegisterCLSID(const GUID& clsid) {
    return CreateClassKey(clsid, {}, KEY_READ | KEY_WRITE).IsValid();
}

bool RegistryHelper::UnregisterCLSID(const GUID& clsid) {
    return DeleteClassKey(clsid, {});
}

bool RegistryHelper::RegisterInprocServer32(const GUID& clsid, const WideString& path) {
    RegistryKey server = CreateClassKey(clsid, ServerKey(), KEY_WRITE);
    return server.IsValid() && server.SetString({}, path) == ERROR_SUCCESS;
}

bool RegistryHelper::UnregisterInprocServer32(const GUID& clsid) {
    return DeleteClassKey(clsid, ServerKey());
}
