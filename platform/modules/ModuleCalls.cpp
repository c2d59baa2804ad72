#include "platform/kernel/Faults.h"
#include "platform/kernel/HostPath.h"
#include "platform/kernel/HostText.h"
#include "platform/modules/Guarded.h"
#include "platform/modules/ModuleSearch.h"
#include "platform/modules/ModuleTable.h"

#include <kelcore/platform/resources.h>

using namespace kel::platform;

namespace {

HMODULE HandleOf(const std::shared_ptr<Module>& module) {
    return module ? module->Handle() : nullptr;
}

HMODULE Use(void* loaded) {
    return loaded ? HandleOf(ModuleTable::Get().UseNative(loaded)) : nullptr;
}

// The program is not counted: it stays.
HMODULE UseLoaded(const Module& module) {
    if (&module == FindModule(nullptr).get())
        return module.Handle();
    return module.IsNative() ? Use(HoldNative(module.HostPath()))
                             : HandleOf(ModuleTable::Get().UseFile(module.HostPath()));
}

// The file a second time, or for the first.
HMODULE LoadAsData(const std::string& hostPath) {
    ModuleTable& table = ModuleTable::Get();
    if (const auto known = table.UseFile(hostPath))
        return known->Handle();
    auto resources = ReadResourcesOf(hostPath);
    return resources ? HandleOf(table.AddFile(std::make_shared<Module>(hostPath, std::move(resources)))) : nullptr;
}

bool IsMissing(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

// A module that is loaded under the name is meant before any file is.
HMODULE Load(const ModuleName& name) {
    if (const auto loaded = name.IsPlain() ? FindLoadedModule(name) : nullptr)
        if (const HMODULE handle = UseLoaded(*loaded))
            return handle;
    std::string hostPath;
    const DWORD error = FindModuleFile(name, hostPath);
    if (error == NO_ERROR)
        return IsNativeFile(hostPath) ? Use(LoadNative(hostPath)) : LoadAsData(hostPath);
    if (IsMissing(error) && name.IsPlain())
        return Use(LoadNative(name.Text()));
    return Fail(IsMissing(error) ? ERROR_MOD_NOT_FOUND : error), nullptr;
}

HMODULE LoadDataFile(const ModuleName& name) {
    std::string hostPath;
    if (const DWORD error = FindModuleFile(name, hostPath))
        return Fail(error), nullptr;
    return LoadAsData(hostPath);
}

std::shared_ptr<Module> FindByName(LPCSTR name) {
    if (name == nullptr)
        return FindModule(nullptr);
    auto module = *name ? FindLoadedModule(ModuleName(name)) : nullptr;
    if (!module)
        Fail(ERROR_MOD_NOT_FOUND);
    return module;
}

std::shared_ptr<Module> FindByAddress(const void* address) {
    NativeModule native;
    if (NativeModuleAt(address, native))
        return ModuleTable::Get().Know(native);
    return Fail(ERROR_MOD_NOT_FOUND), nullptr;
}

// How GetModuleFileNameA gives a path out, unlike other calls: as much as fits.
DWORD GivePath(std::string_view ansi, LPSTR path, DWORD size) {
    if (ansi.size() < size)
        return GiveText(ansi, path, size);
    Fail(ERROR_INSUFFICIENT_BUFFER);
    if (size == 0)
        return 0;
    path[CutAtCharacter(ansi, size - 1).copy(path, size - 1)] = '\0';
    return size;
}

DWORD GiveModulePath(HMODULE handle, LPSTR path, DWORD size) {
    const auto module = FindModule(handle);
    return module ? GivePath(AnsiFromUtf8(Win32FromHostPath(module->HostPath())), path, size) : 0;
}

BOOL GiveModuleHandle(DWORD flags, LPCSTR name, HMODULE& handle) {
    const auto module = flags & GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS ? FindByAddress(name) : FindByName(name);
    if (!module)
        return FALSE;
    handle = flags & GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT ? module->Handle() : UseLoaded(*module);
    return handle || Fail(ERROR_MOD_NOT_FOUND);
}

FARPROC FindProcedure(HMODULE handle, LPCSTR name) {
    const auto module = FindModule(handle);
    if (!module)
        return nullptr;
    const bool program = module == FindModule(nullptr);
    void* found = nullptr;
    if (module->IsNative() && !IS_INTRESOURCE(name))
        found = FindExport(program ? std::string() : module->HostPath(), name);
    if (!found)
        Fail(ERROR_PROC_NOT_FOUND);
    return reinterpret_cast<FARPROC>(found);
}

} // namespace

HMODULE WINAPI LoadLibraryA(LPCSTR name) {
    if (CallFails("LoadLibraryA"))
        return nullptr;
    if (name == nullptr || *name == '\0')
        return Fail(ERROR_MOD_NOT_FOUND), nullptr;
    return Guarded([&] { return Load(ModuleName(name)); });
}

HMODULE WINAPI LoadLibraryExA(LPCSTR name, HANDLE file, DWORD flags) {
    if (CallFails("LoadLibraryExA"))
        return nullptr;
    if (file != nullptr || (flags & ~static_cast<DWORD>(LOAD_LIBRARY_AS_DATAFILE)))
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    if (name == nullptr || *name == '\0')
        return Fail(ERROR_MOD_NOT_FOUND), nullptr;
    return Guarded([&] { return flags ? LoadDataFile(ModuleName(name)) : Load(ModuleName(name)); });
}

BOOL WINAPI FreeLibrary(HMODULE module) {
    // Freeing is done before an injected failure is reported, see CallFails.
    const bool fails = CallFails("FreeLibrary");
    const DWORD fault = GetLastError();
    const bool freed = module ? ModuleTable::Get().Free(module) : Fail(ERROR_INVALID_HANDLE);
    return fails ? Fail(fault) : freed;
}

DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR path, DWORD size) {
    if (CallFails("GetModuleFileNameA"))
        return 0;
    return Guarded([&] { return GiveModulePath(module, path, size); });
}

HMODULE WINAPI GetModuleHandleA(LPCSTR name) {
    if (CallFails("GetModuleHandleA"))
        return nullptr;
    return Guarded([&] { return HandleOf(FindByName(name)); });
}

BOOL WINAPI GetModuleHandleExA(DWORD flags, LPCSTR name, HMODULE* module) {
    constexpr DWORD kKnown = GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS;
    if (module)
        *module = nullptr;
    if (CallFails("GetModuleHandleExA"))
        return FALSE;
    if (!module || (flags & ~kKnown))
        return Fail(ERROR_INVALID_PARAMETER);
    return Guarded([&] { return GiveModuleHandle(flags, name, *module); });
}

FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name) {
    if (CallFails("GetProcAddress"))
        return nullptr;
    return Guarded([&] { return FindProcedure(module, name); });
}
