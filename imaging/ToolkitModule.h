#pragma once

#include <kelcore/platform.h>

/// @file
/// Finding and loading the toolkit's module.
namespace kel {

/// A use of the toolkit's module, ended with this object.
class ToolkitModule {
public:
    /// Loads the module that is registered, or the one of the plain name when none is.
    static ToolkitModule Registered();
    /// Loads the module of the plain name.
    static ToolkitModule ByName();

    ToolkitModule(const ToolkitModule&) = delete;
    ToolkitModule& operator=(const ToolkitModule&) = delete;
    ~ToolkitModule();

    /// Null when it could not be loaded.
    HMODULE Get() const { return m_module; }

private:
    explicit ToolkitModule(const char* path);

    HMODULE m_module;
};

} // namespace kel
