#pragma once

#include "platform/modules/ResourceTree.h"

#include <kelcore/platform/modules.h>

#include <memory>
#include <mutex>
#include <string>

namespace kel::platform {

/// The resources of a module or a file, once they are read.
class Resources {
public:
    explicit Resources(ResourceSection section) : m_section(std::move(section)), m_tree(m_section) {}
    Resources(const Resources&) = delete;
    Resources& operator=(const Resources&) = delete;

    const ResourceTree& Tree() const { return m_tree; }

private:
    const ResourceSection m_section;
    const ResourceTree m_tree;
};

/// Reads the resources of a PE file.
/// @return null with the last error set: ERROR_BAD_EXE_FORMAT for what is no PE file or is cut short, or what the host
///         reports.
std::unique_ptr<Resources> ReadResources(const std::string& hostPath);

/// Reads the resources of the file, or if it is a native module, of the file beside it. @return null with the last
/// error set.
std::unique_ptr<Resources> ReadResourcesOf(const std::string& hostPath);

/// Whether the file begins like a native module of the host.
bool IsNativeFile(const std::string& hostPath);

/// One module of the process.
class Module {
public:
    /// A native module. @param base where the host has loaded it.
    Module(std::string hostPath, const void* base);
    /// A file loaded as data. @param resources not null.
    Module(std::string hostPath, std::unique_ptr<Resources> resources);

    /// What the program knows it by: where a native module lies in memory, and the address of this record of a PE file.
    HMODULE Handle() const { return m_handle; }
    bool IsNative() const { return m_native; }
    const std::string& HostPath() const { return m_hostPath; }

    /// Null with the last error ERROR_RESOURCE_DATA_NOT_FOUND if the module has none. A native module's are looked for
    /// at the first call.
    const Resources* GetResources();

private:
    friend class ModuleTable;

    const std::string m_hostPath; ///< absolute, links resolved
    const bool m_native;
    const HMODULE m_handle;
    std::once_flag m_looked;
    std::unique_ptr<Resources> m_resources;
    // Guarded by the table:
    std::size_t m_uses = 0;
    void* m_loaded = nullptr; ///< the host loader's handle while there are uses of a native module
};

/// The module that @p handle names, null asking for the program. @return null with the last error
/// ERROR_MOD_NOT_FOUND.
std::shared_ptr<Module> FindModule(HMODULE handle);

/// The bytes of a resource in the language that suits the user; they last as long as the module is loaded.
/// @return false with the last error set as FindResourceA describes it.
bool FindResourceBytes(HMODULE handle, LPCSTR type, LPCSTR name, Bytes& bytes);

/// Uses of modules that LoadLibraryA and its like have given out and FreeLibrary has not taken back.
std::size_t ModuleUses();

} // namespace kel::platform
