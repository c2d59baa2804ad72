// usage: kelregister [-u] MODULE
//
// Lets a module register itself (DllRegisterServer), or with -u take that back (DllUnregisterServer).

#include <kelcore/platform.h>

#include <cstdio>
#include <cstring>

namespace {

using Entry = HRESULT(STDMETHODCALLTYPE*)();

int Fail(const char* module, const char* what, unsigned code) {
    std::fprintf(stderr, "kelregister: %s: %s (0x%08X)\n", module, what, code);
    return 1;
}

int Call(const char* path, const char* entry) {
    const HMODULE module = LoadLibraryA(path);
    if (!module)
        return Fail(path, "cannot be loaded", GetLastError());
    const auto call = reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(module, entry)));
    if (!call)
        return Fail(path, "does not register itself", GetLastError());
    const HRESULT result = call();
    return FAILED(result) ? Fail(path, "registration failed", static_cast<unsigned>(result)) : 0;
}

} // namespace

int main(int count, char** arguments) {
    const bool undo = count > 1 && std::strcmp(arguments[1], "-u") == 0;
    if (count != (undo ? 3 : 2)) {
        std::fputs("usage: kelregister [-u] MODULE\n", stderr);
        return 2;
    }
    return Call(arguments[count - 1], undo ? "DllUnregisterServer" : "DllRegisterServer");
}
