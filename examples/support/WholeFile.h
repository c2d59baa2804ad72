#pragma once

#include <kelcore/widestring.h>

namespace kelexamples {

/// Writes a file, and removes it again if it cannot be written whole.
/// @param creation CREATE_NEW, or CREATE_ALWAYS to write over an older file.
/// @throws Failure
void WriteWhole(const WideString& path, const NarrowString& bytes, unsigned creation);

/// Writes a file beside its place and puts it there when it is whole, over an older one.
/// @throws Failure; an older file stays then.
void ReplaceWhole(const WideString& path, const NarrowString& bytes);

} // namespace kelexamples
