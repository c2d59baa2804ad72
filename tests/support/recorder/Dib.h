#pragma once

#include <kelcore/imaging/toolkit.h>

#include <string>

namespace kel::recorder {

/// A packed bitmap with the pattern in colour table and pixels, or with zeros.
std::string PackedDib(int width, int height, int depth, bool blank = false);
/// "4x3x24", "0" for no block.
std::string DescribeDib(HGLOBAL block);
/// The packed bitmap that the bytes of one of the recorder's files stand for; empty for an unknown kind.
std::string DibOfFile(const std::string& file);

} // namespace kel::recorder
