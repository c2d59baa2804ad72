#pragma once

/// @file
/// What all pictures have in common.

#include <kelcore/bitmap/interfaces.h>

/// The members of a picture that can be written in terms of its interface alone. It has no data.
///
/// A picture class derives from it and supplies GetDimension, IsEmpty, SetEmpty, CreateBitmap, GetBitsPerPixel, the
/// brackets of surface and palette, and Detach if its objects share pictures.
class KELCORE_API BitmapBase : public IBitmap {
public:
    /// Draws one rectangle of a picture; made on the stack for one drawing call.
    struct KELCORE_API IBltSrc {
        /// Draws the part @p source (pixels, rows counted from the top) into @p target (device units).
        virtual bool Blt(HDC dc, const Rect& source, const Rect& target) const = 0;

    protected:
        ~IBltSrc() = default;
    };

    /// Draws from pixel memory (`StretchDIBits`). It owns nothing. The device context's stretch mode is COLORONCOLOR
    /// afterwards.
    struct KELCORE_API DibSrc : IBltSrc {
        DibSrc(const BITMAPINFO* header, const void* bits, unsigned long rop);
        /// @return false when header, pixels or @p dc are null or the system refuses.
        bool Blt(HDC dc, const Rect& source, const Rect& target) const override;

        const BITMAPINFO* m_pInfo; ///< header and colour table
        const void* m_pBits;       ///< the pixel memory
        unsigned long m_dwRop;     ///< the raster operation
    };

    BitmapBase();
    BitmapBase(const BitmapBase& other);
    BitmapBase& operator=(const BitmapBase& other);

    /// Turns a COLORREF into the number whose little-endian bytes are blue, green, red, and back; the top byte becomes
    /// 0.
    static unsigned int DibRGB(unsigned long color);

    unsigned int GetWidth() const override;
    unsigned int GetHeight() const override;
    /// ((width * depth + 31) / 32) * 4.
    int GetScanlineSize() const override;
    /// @return null.
    const BITMAPINFO* GetBitmapInfo() const override;
    /// @return null.
    const char* GetBitmapBits() const override;

    /// Replaces the picture by a copy of a packed device-independent bitmap: header, colour table, rows. The block may
    /// stand at any address.
    ///
    /// Accepted are headers of 40 bytes and more, the depths 1, 4, 8, 16, 24 and 32, rows in either order, no
    /// compression or bit-fields that say what no compression means (5 bits a channel at depth 16). See
    /// docs/formats/packed-dib.md.
    /// @return false for anything else, for a null or short block, for sizes that overflow and for a colour table that
    ///         is too large; the picture is then unchanged. False also when the new picture cannot be made; it is empty
    ///         then.
    bool SetDib(void* dib, int size) override;
    /// Locks the block (`GlobalLock`), measures it (`GlobalSize`) and passes it to the other SetDib.
    bool SetDib(void* block) override;

    /// Replaces every pixel that has the colour @p key by the pixel of @p other at its place, at depth 32 with its
    /// fourth byte. A picture of another size or depth is first placed centred on black at this picture's size and
    /// depth.
    /// @return false unless this picture has depth 24 or 32 and the memory of both can be reached; nothing has changed.
    bool CombineBitmap(const IBitmap& other, unsigned long key) override;
    /// Tints @p area (rows counted from the top, clipped to the picture): every channel c becomes
    /// (A * tint + c * (256 - alpha)) >> 8 with A = alpha * 256 / 255.
    ///
    /// Without a mask the fourth bytes become 0. With a mask only the pixels are tinted whose bit is set, their fourth
    /// bytes stay, and the area's left edge moves down to a multiple of 8.
    /// @param mask null, or a picture of depth 1 and this picture's size.
    /// @return true also when there is nothing to do, whatever the arguments are when @p alpha is 0; false unless the
    ///         picture has depth 32 and a fitting mask and their memory can be reached. Nothing has changed then.
    bool AlphaShadeBitmap(const Rect& area, unsigned long tint, unsigned char alpha, const IBitmap* mask) override;
    /// The colour of a pixel at the depths 24 and 32, its bit at depth 1.
    /// @return 0xFFFFFFFF for other depths, outside the picture and without pixel memory.
    unsigned long GetPixel(int x, int y) const override;
    /// Whether a pixel has the colour, fourth bytes left aside. @return false for depths below 24, too.
    bool ContainsColor(unsigned long color) const override;

    /// Sets the bit number @p bit in every pixel of this picture of depth 8 whose pixel in @p mask is 1, or 0 if
    /// @p invert; no bit is cleared.
    /// @param mask a picture of depth 1 and this picture's size.
    /// @param bit 0 to 7.
    /// @return false when depths, sizes or @p bit do not fit or the memory cannot be reached; nothing has changed then.
    bool Combine1BitTo8Bit(const IBitmap& mask, int bit, bool invert);

protected:
    ~BitmapBase() = default;

    /// Makes the stored picture this object's alone before it is changed. Here there is nothing to do.
    /// @return whether it is.
    virtual bool Detach();

    /// Bytes of a row of @p bits bits: a multiple of 4.
    static int WidthBytes(int bits);
    /// Bytes of the colour table that belongs to @p header.
    int CalculateTableSize(const BITMAPINFOHEADER* header) const;
    /// Draws the picture by the geometry of @p mode: one call of @p source, or one for every tile that meets the clip
    /// box of @p dc (`GetClipBox`), row by row.
    ///
    /// Tiles of a width or height that rounds to 0, and more than 2^26 tiles, are not drawn.
    /// @return false at the first call of @p source that fails; later tiles are not drawn. True when there was nothing
    /// to
    ///         draw.
    bool InternalDraw(const IBltSrc& source, HDC dc, const Rect& target, BM_Mode mode, XSize<double> scale) const;
};
