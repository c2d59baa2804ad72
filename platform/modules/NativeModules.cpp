#include "platform/modules/NativeModules.h"

#include "platform/kernel/LastError.h"

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace kel::platform {
namespace {

/// Holds off other threads that are here. The host's loader has a lock of its own, which it too holds while
/// constructors run; this one lets what it hands out be read after it has let go of that.
class LoaderLock {
public:
    LoaderLock() : m_guard(Mutex()) {}

private:
    static std::recursive_mutex& Mutex() {
        static std::recursive_mutex& mutex = *new std::recursive_mutex; // outlives static objects that free modules
        return mutex;
    }

    const std::lock_guard<std::recursive_mutex> m_guard;
};

// The loader's name of the program is what it was called by; the host knows its file.
std::string ProgramPath() {
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    return length == -1 ? std::string() : std::string(path, static_cast<std::size_t>(length));
}

std::string ResolvedPath(const char* name) {
    char path[PATH_MAX];
    return realpath(name, path) == nullptr ? std::string(name) : std::string(path);
}

const void* BaseOf(const dl_phdr_info& info) {
    for (int i = 0; i < info.dlpi_phnum; ++i)
        if (info.dlpi_phdr[i].p_type == PT_LOAD) {
            const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
            return reinterpret_cast<const void*>((info.dlpi_addr + info.dlpi_phdr[i].p_vaddr) & ~(page - 1));
        }
    return nullptr;
}

/// How often the loader has taken a module in and let one go: while both stand, so does what is loaded.
struct Changes {
    unsigned long long added = 0;
    unsigned long long removed = 0;

    bool operator==(const Changes&) const = default;
};

int NoteChanges(dl_phdr_info* info, std::size_t, void* changes) {
    *static_cast<Changes*>(changes) = {info->dlpi_adds, info->dlpi_subs};
    return 1; // each module tells the same
}

struct Listed {
    const void* base;
    std::string name;
};

struct Listing {
    Changes changes;
    std::vector<Listed> modules;
};

// The loader holds its lock meanwhile: nothing but names is taken down.
int ListOne(dl_phdr_info* info, std::size_t size, void* listing) {
    NoteChanges(info, size, &static_cast<Listing*>(listing)->changes);
    static_cast<Listing*>(listing)->modules.push_back({BaseOf(*info), info->dlpi_name});
    return 0;
}

Listing ListModules() {
    Listing listing;
    dl_iterate_phdr(ListOne, &listing);
    return listing;
}

// Where the program lies.
const void* ProgramBase() {
    static const void* const base = ListModules().modules.front().base;
    return base;
}

std::string PathOf(const void* base, const char* name) {
    return base == ProgramBase() ? ProgramPath() : ResolvedPath(name);
}

// The system is asked for every part of every path.
std::shared_ptr<const std::vector<NativeModule>> Resolved(const std::vector<Listed>& listed) {
    auto modules = std::make_shared<std::vector<NativeModule>>();
    modules->reserve(listed.size());
    for (const Listed& module : listed)
        modules->push_back({module.base, PathOf(module.base, module.name.c_str())});
    return modules;
}

// The loader tells its reasons in words only.
DWORD LoadError() {
    const char* reason = dlerror();
    if (std::strstr(reason, "undefined symbol"))
        return ERROR_PROC_NOT_FOUND;
    return std::strstr(reason, "cannot open shared object file") ? ERROR_MOD_NOT_FOUND : ERROR_BAD_EXE_FORMAT;
}

} // namespace

bool NativeModuleAt(const void* address, NativeModule& module) {
    const LoaderLock lock;
    Dl_info info;
    if (dladdr(address, &info) == 0)
        return false;
    module = {info.dli_fbase, PathOf(info.dli_fbase, info.dli_fname)};
    return true;
}

std::shared_ptr<const std::vector<NativeModule>> NativeModules() {
    static Changes& known = *new Changes; // both outlive static objects, as the lock does
    static auto& modules = *new std::shared_ptr<const std::vector<NativeModule>>;
    const LoaderLock lock;
    Changes now;
    dl_iterate_phdr(NoteChanges, &now);
    if (!modules || now != known) {
        const Listing listing = ListModules();
        modules = Resolved(listing.modules);
        known = listing.changes;
    }
    return modules;
}

void* LoadNative(const std::string& name) {
    const LoaderLock lock;
    void* loaded = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (loaded == nullptr)
        Fail(LoadError());
    return loaded;
}

void* HoldNative(const std::string& hostPath) {
    const LoaderLock lock;
    return dlopen(hostPath.c_str(), RTLD_LAZY | RTLD_NOLOAD);
}

void FreeNative(void* loaded) {
    const LoaderLock lock;
    dlclose(loaded);
}

NativeModule DescribeNative(void* loaded) {
    const LoaderLock lock;
    link_map* map = nullptr;
    NativeModule module;
    if (dlinfo(loaded, RTLD_DI_LINKMAP, &map) == 0)
        NativeModuleAt(map->l_ld, module);
    return module;
}

void* FindExport(const std::string& hostPath, const char* name) {
    const LoaderLock lock;
    void* loaded = dlopen(hostPath.empty() ? nullptr : hostPath.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (loaded == nullptr)
        return nullptr;
    void* found = dlsym(loaded, name);
    dlclose(loaded);
    return found;
}

} // namespace kel::platform
