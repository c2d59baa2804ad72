// Packed device-independent bitmaps from foreign bytes. One that is accepted comes out again as the same picture; one
// that is refused leaves the picture as it was.

#include "tests/bitmap/MemoryPicture.h"

#include <cstdint>
#include <cstdlib>

namespace {

void Require(bool holds) {
    if (!holds)
        std::abort();
}

bool HaveSameBytes(const IBitmap& a, const IBitmap& b) {
    const auto entries = static_cast<std::size_t>(a.GetNumPaletteEntries());
    return a.GetWidth() == b.GetWidth() && a.GetHeight() == b.GetHeight() &&
           a.GetBitsPerPixel() == b.GetBitsPerPixel() && BytesOf(a) == BytesOf(b) &&
           std::memcmp(a.LockPalette(), b.LockPalette(), 4 * entries) == 0;
}

// The picture's rows as a client of the interface sees them.
void Look(const IBitmap& picture) {
    const int right = static_cast<int>(picture.GetWidth()) - 1;
    const int bottom = static_cast<int>(picture.GetHeight()) - 1;
    const unsigned long last = picture.GetPixel(right, bottom);
    Require(picture.GetBitsPerPixel() < 24 || picture.ContainsColor(last));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::uint8_t> block(data, data + size);
    MemoryPicture plain({1, 1}, 24);
    GDIBitmap picture;
    const bool accepted = plain.SetDib(block.data(), static_cast<int>(size));
    Require(picture.SetDib(block.data(), static_cast<int>(size)) == accepted);
    if (!accepted) {
        Require(plain.GetWidth() == 1 && picture.IsEmpty());
        return 0;
    }
    Look(plain);
    Require(HaveSameBytes(plain, picture));
    const HGLOBAL clone = picture.GetDibClone();
    MemoryPicture again;
    Require(again.SetDib(clone));
    Require(HaveSameBytes(plain, again));
    GlobalFree(clone);
    return 0;
}
