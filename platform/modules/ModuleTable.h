#pragma once

#include "platform/modules/Module.h"
#include "platform/modules/NativeModules.h"

#include <shared_mutex>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kel::platform {

/// The modules of the process that somebody has asked for.
///
/// The host's loader runs constructors and destructors of modules, which may come back here: it is never called under
/// the table's lock. Native modules that the host has loaded by itself get a record without uses, which holds nothing.
class ModuleTable {
public:
    static ModuleTable& Get();

    /// The module of a handle, null without.
    std::shared_ptr<Module> Find(HMODULE handle);

    /// The record of a native module, made if there is none.
    std::shared_ptr<Module> Know(const NativeModule& native);

    /// One more use of a file that is loaded as data; null if it is not.
    std::shared_ptr<Module> UseFile(const std::string& hostPath);

    /// Adds a file as data with one use, or uses the one that another thread has added meanwhile.
    std::shared_ptr<Module> AddFile(std::shared_ptr<Module> file);

    /// Counts a use of a native module. @param loaded a hold of it, which the table takes.
    std::shared_ptr<Module> UseNative(void* loaded);

    /// Ends a use. @return false with the last error ERROR_MOD_NOT_FOUND for what is no module.
    bool Free(HMODULE handle);

    /// What is loaded as data, in the order of loading.
    std::vector<std::shared_ptr<Module>> Files();

    std::size_t Uses();

private:
    std::shared_ptr<Module> UseFileLocked(const std::string& hostPath);
    std::shared_ptr<Module>& KnowLocked(const NativeModule& native);
    void* EndUse(Module& module);
    void ForgetUnloaded(const std::shared_ptr<Module>& module);

    std::shared_mutex m_mutex; // guards what follows, and the uses of the modules
    std::unordered_map<HMODULE, std::shared_ptr<Module>> m_modules;
    std::vector<std::shared_ptr<Module>> m_files;
    std::size_t m_uses = 0;
};

} // namespace kel::platform
