#include "platform/modules/ModuleTable.h"

#include "platform/kernel/LastError.h"

#include <algorithm>

namespace kel::platform {

// Never destroyed: modules are freed by destructors of static objects, in an order nobody knows.
ModuleTable& ModuleTable::Get() {
    static ModuleTable& table = *new ModuleTable;
    return table;
}

std::shared_ptr<Module> ModuleTable::Find(HMODULE handle) {
    const std::shared_lock guard(m_mutex);
    const auto found = m_modules.find(handle);
    return found == m_modules.end() ? nullptr : found->second;
}

// A module that the host has unloaded by itself leaves its record behind, until another takes its place in memory.
std::shared_ptr<Module>& ModuleTable::KnowLocked(const NativeModule& native) {
    auto module = std::make_shared<Module>(native.hostPath, native.base);
    std::shared_ptr<Module>& record = m_modules[module->Handle()];
    if (!record || (record->m_uses == 0 && record->HostPath() != native.hostPath))
        record = std::move(module);
    return record;
}

std::shared_ptr<Module> ModuleTable::Know(const NativeModule& native) {
    const auto handle = reinterpret_cast<HMODULE>(reinterpret_cast<std::uintptr_t>(native.base));
    std::shared_ptr<Module> known = Find(handle);
    if (known && known->HostPath() == native.hostPath)
        return known;
    const std::lock_guard guard(m_mutex);
    return KnowLocked(native);
}

std::shared_ptr<Module> ModuleTable::UseFileLocked(const std::string& hostPath) {
    for (const std::shared_ptr<Module>& file : m_files)
        if (file->HostPath() == hostPath) {
            ++file->m_uses;
            ++m_uses;
            return file;
        }
    return nullptr;
}

std::shared_ptr<Module> ModuleTable::UseFile(const std::string& hostPath) {
    const std::lock_guard guard(m_mutex);
    return UseFileLocked(hostPath);
}

std::shared_ptr<Module> ModuleTable::AddFile(std::shared_ptr<Module> file) {
    const std::lock_guard guard(m_mutex);
    if (std::shared_ptr<Module> other = UseFileLocked(file->HostPath()))
        return other;
    m_files.push_back(file);
    m_modules.emplace(file->Handle(), file);
    file->m_uses = 1;
    ++m_uses;
    return file;
}

std::shared_ptr<Module> ModuleTable::UseNative(void* loaded) {
    const NativeModule native = DescribeNative(loaded);
    std::shared_ptr<Module> module;
    {
        const std::lock_guard guard(m_mutex);
        module = KnowLocked(native);
        ++m_uses;
        if (module->m_uses++ == 0)
            std::swap(module->m_loaded, loaded);
    }
    if (loaded)
        FreeNative(loaded); // the first hold is enough
    return module;
}

// What the host's loader has to let go after the last use of a native module; null otherwise. A record of a native
// module stays, because its destructors may ask for it.
void* ModuleTable::EndUse(Module& module) {
    void* loaded = nullptr;
    --m_uses;
    if (--module.m_uses != 0)
        return nullptr;
    std::swap(module.m_loaded, loaded);
    if (!module.IsNative()) {
        std::erase_if(m_files, [&](const auto& file) { return file.get() == &module; });
        m_modules.erase(module.Handle());
    }
    return loaded;
}

void ModuleTable::ForgetUnloaded(const std::shared_ptr<Module>& module) {
    if (void* still = HoldNative(module->HostPath())) {
        FreeNative(still);
        return;
    }
    const std::lock_guard guard(m_mutex);
    const auto found = m_modules.find(module->Handle());
    if (found != m_modules.end() && found->second == module && module->m_uses == 0)
        m_modules.erase(found);
}

bool ModuleTable::Free(HMODULE handle) {
    const std::shared_ptr<Module> module = Find(handle);
    if (!module)
        return Fail(ERROR_MOD_NOT_FOUND);
    void* loaded = nullptr;
    {
        const std::lock_guard guard(m_mutex);
        if (module->m_uses != 0)
            loaded = EndUse(*module);
    }
    if (loaded) {
        FreeNative(loaded);
        ForgetUnloaded(module);
    }
    return true;
}

std::vector<std::shared_ptr<Module>> ModuleTable::Files() {
    const std::shared_lock guard(m_mutex);
    return m_files;
}

std::size_t ModuleTable::Uses() {
    const std::shared_lock guard(m_mutex);
    return m_uses;
}

std::shared_ptr<Module> FindModule(HMODULE handle) {
    ModuleTable& table = ModuleTable::Get();
    if (handle == nullptr) {
        static const HMODULE program = table.Know(NativeModules()->front())->Handle();
        handle = program;
    }
    std::shared_ptr<Module> module = table.Find(handle);
    if (!module)
        Fail(ERROR_MOD_NOT_FOUND);
    return module;
}

std::size_t ModuleUses() {
    return ModuleTable::Get().Uses();
}

} // namespace kel::platform
