#pragma once

#include <kelcore/bitmap/gdibitmap.h>

#include <cstddef>
#include <cstdint>

/// The picture that GDIBitmap objects share. It dies with its last owner.
struct GDIBitmap::Image {
    HBITMAP handle = nullptr;      ///< Owned; null for an empty picture.
    BITMAPINFO* info = nullptr;    ///< Header of 40 bytes and colour table, a block of `malloc`.
    void* bits = nullptr;          ///< The pixel memory of a DIB section, which is the handle's.
    bool screenCompatible = false; ///< Whether the bitmap has the display's own format.
    std::int32_t refCount = 1;

    /// Ends one share.
    void Release();

    /// Describes a picture: a header and a colour table of zeros.
    /// @return false when there is no memory.
    bool Describe(const Size& size, int depth);

    /// Makes the bitmap that the description asks for.
    /// @return whether the system did.
    bool MakeHandle(bool deviceDependent);

    /// Owns @p bitmap from now on instead of its own; a system picture afterwards.
    void ReplaceHandle(HBITMAP bitmap);

    int Depth() const { return info->bmiHeader.biBitCount; }
    Size Dimension() const { return Size(info->bmiHeader.biWidth, info->bmiHeader.biHeight); }
    RGBQUAD* Table() const { return info->bmiColors; }
    std::size_t TableSize() const;
    std::size_t PixelBytes() const;

    /// Whether this is a DIB section whose bitmap has a colour table of its own.
    bool HasBitmapTable() const { return bits && Depth() <= 8; }

    /// Has the bitmap's own colour table follow this picture's, so that the bitmap shows the picture's colours wherever
    /// it is drawn. Nothing to do for other pictures.
    /// @param dc a device context into which the bitmap is selected.
    /// @return false when the system refuses.
    bool FollowTable(HDC dc) const;
    /// The same in a device context of its own.
    bool FollowTable() const;

    /// Takes over the colour table of a bitmap of the same depth.
    bool TakeTable(HBITMAP bitmap);

    /// Takes over pixels, and the colour table, from a bitmap of the same size (`GetDIBits`).
    bool FetchFrom(HDC dc, HBITMAP bitmap);

    /// Writes the pixel rows, and for a system picture its colours, into a packed bitmap.
    /// @param header this picture's header and colour table.
    bool WriteRows(BITMAPINFO* header, void* rows) const;

    /// Takes over pixels and colours of a picture of the same size and depth.
    /// @return false when either cannot be reached; nothing has been copied then.
    bool CopyFrom(const IBitmap& source);

    /// Takes over the colours of a picture of the same depth; those of a system picture are its bitmap's.
    bool CopyTable(const IBitmap& source);
};
