#pragma once

#include "toolkit/PackedDib.h"
#include "toolkit/Pixels.h"

#include <cstdint>
#include <functional>

/// @file
/// How effects replace a picture. Those that make new colours work on wide pictures: 24 or 32 bits a pixel, or 8 bits
/// over a colour table that is grey n at entry n. All other pictures are widened first: those of 1, 4 and 8 bits whose
/// colour table is grey throughout to 8 bits, all others to 24.
namespace kel::toolkit::effects {

/// Writes the pixels of the new picture, which are zero, from those of the old one.
using Maker = std::function<void(const DibLock& from, const DibLock& to)>;

/// A wide picture with the colours of @p picture, which may be wide itself; pixels without an entry in the colour table
/// are black. @return an empty object if there is no memory.
PackedDib Widened(const PackedDib& picture);

/// Replaces the picture by a wide one of that size; both that @p make is given are wide and of one depth.
/// @return S_OK; E_OUTOFMEMORY, and the picture is as it was.
HRESULT Remake(PackedDib& picture, std::int64_t width, std::int64_t height, const Maker& make);

/// Replaces the picture by one of that size with the same depth and colour table. @return as Remake.
HRESULT Move(PackedDib& picture, std::int64_t width, std::int64_t height, const Maker& make);

} // namespace kel::toolkit::effects
