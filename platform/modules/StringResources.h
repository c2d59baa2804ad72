#pragma once

#include <kelcore/platform/resources.h>

#include <string>

namespace kel::platform {

/// String @p id of a module's string tables in the ANSI code page; empty if there is none.
std::string StringResource(HMODULE module, WORD id);

} // namespace kel::platform
