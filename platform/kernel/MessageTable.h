#pragma once

#include <kelcore/platform/base.h>

/// The texts that stand for error codes.
namespace kel::platform {

/// The English text for @p code, a Win32 error code or a COM result, without a line break at its end; a COM result of
/// the form 0x8007xxxx has the text of the Win32 code in its low word. Null if there is none.
const char* SystemText(DWORD code);

} // namespace kel::platform
