#pragma once

#include <kelcore/widestring.h>

#include <vector>

namespace kelarchive {

/// Packs the files and folders at @p paths into the archive @p archive and prints what it did.
/// @throws Failure; no archive is left behind then, an older one stays.
void Pack(const WideString& archive, const std::vector<WideString>& paths, bool scramble);

} // namespace kelarchive
