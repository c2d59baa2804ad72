#pragma once

#include <kelcore/widestring.h>

namespace kelarchive {

/// Unpacks the archive into @p folder, which is made if it is missing, with names, times and attributes. Nothing that
/// exists is overwritten.
/// @throws Failure; what was unpacked so far stays, but no file that is not whole.
void Unpack(const WideString& archive, const WideString& folder);

} // namespace kelarchive
