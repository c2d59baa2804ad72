#pragma once

#include "Entries.h"

namespace kelarchive {

/// Reads the whole archive at @p path past @p visitor, checking every block on the way, and shows @p verb on a terminal
/// meanwhile.
/// @throws Failure if anything is wrong with the archive or the visitor throws one.
void ReadArchive(const WideString& path, const char* verb, EntryVisitor& visitor);

} // namespace kelarchive
