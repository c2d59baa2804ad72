#pragma once

#include "imaging/Blocks.h"
#include "imaging/ToolkitControl.h"

#include "bitmap/DibLayout.h"

/// @file
/// Looking into the block of a control's picture.
namespace kel {

/// Where the pixels of a packed bitmap begin: behind header and colour table.
inline char* PixelsOf(BITMAPINFO* dib) {
    return reinterpret_cast<char*>(dib) + dib->bmiHeader.biSize + TableBytes(dib->bmiHeader);
}

/// The block of a control's picture, locked.
class LockedPicture : public LockedBlock {
public:
    /// @param control may be null.
    explicit LockedPicture(toolkit::IControl* control) : LockedBlock(control ? PictureOf(control) : nullptr) {}

    /// Null without a picture and when it could not be locked.
    const BITMAPINFOHEADER* Header() const { return Bytes() ? &Dib()->bmiHeader : nullptr; }
};

} // namespace kel
