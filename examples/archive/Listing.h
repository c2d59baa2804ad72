#pragma once

#include <kelcore/widestring.h>

namespace kelarchive {

/// Prints a line for every entry: attributes, size, time of the last change (UTC), path.
/// @throws Failure if the archive is not sound; the entries before the damage are printed.
void List(const WideString& archive);

/// Reads everything and prints what was found sound.
/// @throws Failure that names the damaged block.
void Verify(const WideString& archive);

} // namespace kelarchive
