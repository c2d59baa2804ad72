#include "platform/kernel/Faults.h"
#include "platform/modules/Guarded.h"
#include "platform/modules/Module.h"

#include <kelcore/platform/languages.h>
#include <kelcore/platform/resources.h>

using namespace kel::platform;

namespace {

std::shared_ptr<Module> FindWithResources(HMODULE handle) {
    auto module = FindModule(handle);
    if (!module || !module->GetResources())
        return Fail(ERROR_RESOURCE_DATA_NOT_FOUND), nullptr;
    return module;
}

HRSRC FindIn(HMODULE handle, LPCSTR type, LPCSTR name, LANGID language) {
    ResourceName wantedType;
    ResourceName wantedName;
    if (!ParseResourceName(type, wantedType) || !ParseResourceName(name, wantedName))
        return nullptr;
    const auto module = FindWithResources(handle);
    const char* record = module ? module->GetResources()->Tree().Find(wantedType, wantedName, language) : nullptr;
    return reinterpret_cast<HRSRC>(const_cast<char*>(record));
}

Bytes DataOf(HMODULE handle, HRSRC resource) {
    Bytes data;
    if (const auto module = FindWithResources(handle))
        module->GetResources()->Tree().Data(resource, data);
    return data;
}

} // namespace

bool kel::platform::FindResourceBytes(HMODULE handle, LPCSTR type, LPCSTR name, Bytes& bytes) {
    const HRSRC resource = FindIn(handle, type, name, LANG_NEUTRAL);
    if (!resource)
        return false;
    bytes = DataOf(handle, resource);
    return true;
}

HRSRC WINAPI FindResourceA(HMODULE module, LPCSTR name, LPCSTR type) {
    if (CallFails("FindResourceA"))
        return nullptr;
    return Guarded([&] { return FindIn(module, type, name, LANG_NEUTRAL); });
}

HRSRC WINAPI FindResourceExA(HMODULE module, LPCSTR type, LPCSTR name, WORD language) {
    if (CallFails("FindResourceExA"))
        return nullptr;
    return Guarded([&] { return FindIn(module, type, name, language); });
}

DWORD WINAPI SizeofResource(HMODULE module, HRSRC resource) {
    if (CallFails("SizeofResource"))
        return 0;
    return Guarded([&] { return static_cast<DWORD>(DataOf(module, resource).Size()); });
}

HGLOBAL WINAPI LoadResource(HMODULE module, HRSRC resource) {
    if (CallFails("LoadResource"))
        return nullptr;
    return Guarded([&] { return static_cast<HGLOBAL>(const_cast<char*>(DataOf(module, resource).Data())); });
}

LPVOID WINAPI LockResource(HGLOBAL block) {
    return CallFails("LockResource") ? nullptr : block;
}
