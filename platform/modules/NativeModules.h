#pragma once

#include <memory>
#include <string>
#include <vector>

/// The host's loader.
namespace kel::platform {

/// A native module that is loaded.
struct NativeModule {
    const void* base = nullptr; ///< where it begins in memory
    std::string hostPath;       ///< absolute, links resolved
};

/// The module that has @p address in it; false if none has.
bool NativeModuleAt(const void* address, NativeModule& module);

/// All of them, the program first, as they were when they were loaded or first asked for.
std::shared_ptr<const std::vector<NativeModule>> NativeModules();

/// Loads a module, or takes one more hold of a loaded one.
/// @param name a path, or a name that the loader looks for.
/// @return the loader's handle, or null with the last error set as LoadLibraryA describes it.
void* LoadNative(const std::string& name);

/// Takes one more hold of a module that is loaded; null if it is not.
void* HoldNative(const std::string& hostPath);

void FreeNative(void* loaded);

/// The module that a loader's handle stands for.
NativeModule DescribeNative(void* loaded);

/// What a module exports; null for nothing of that name. @param hostPath empty for the program.
void* FindExport(const std::string& hostPath, const char* name);

} // namespace kel::platform
