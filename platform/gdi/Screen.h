#pragma once

/// @file
/// The screen: a surface of 32 bits a pixel that lives as long as the process.

#include "platform/gdi/Surface.h"

namespace kel::platform {

constexpr int kScreenDotsPerInch = 96;

/// Black at first. Every context of the screen draws into it.
const Surface& Screen();

/// Its size in whole millimetres.
SIZE ScreenMillimetres();

} // namespace kel::platform
