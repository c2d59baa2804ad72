#pragma once

#include <kelcore/widestring.h>

namespace kelexamples {

/// Whether a name that was read stays inside the folder that a file of this name is written into.
bool IsPlainName(const WideString& name);

} // namespace kelexamples
