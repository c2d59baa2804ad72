#pragma once

#include "toolkit/Budget.h"
#include "toolkit/PackedDib.h"
#include "toolkit/codecs/Codec.h"

/// @file
/// The toolkit's own format (docs/formats/saved-picture.md): a picture's packed bitmap, compressed without loss, or the
/// picture file that it was decoded from.
namespace kel::toolkit {

/// Whether bytes begin with the format's signature.
bool IsSavedPicture(Bytes file);

/// What a saved picture holds: one of @c dib and @c file.
struct SavedPicture {
    SHORT status = kDamaged;      ///< kLoaded if either is there
    PackedDib dib;                ///< the bitmap, byte for byte
    Bytes file;                   ///< the picture file, within what was read
    bool keepOrientation = false; ///< how to decode the file
};

/// Reads a saved picture; bytes behind it are not looked at.
SavedPicture ReadSavedPicture(Bytes saved, const Budget& budget);

/// A movable block with a saved bitmap, the caller's to free; null if there is no memory.
HGLOBAL SaveBitmap(const DibLock& dib);

/// A movable block with a saved picture file, the caller's to free; null if there is no memory.
HGLOBAL SaveFile(Bytes file, bool keepOrientation);

} // namespace kel::toolkit
