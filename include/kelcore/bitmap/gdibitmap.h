#pragma once

/// @file
/// The picture class over bitmaps of the system.

#include <kelcore/bitmap/base.h>
#include <kelcore/runtime/objects.h>

/// A picture in a bitmap of the system: a DIB picture, whose pixel memory the process reaches, or a system picture,
/// whose pixels are the device's.
///
/// Copies share one picture and cost a count; whoever changes it first takes a copy of his own. Members that draw or
/// fill through the system work for both kinds; those that need pixel memory answer false for system pictures. Static
/// factories answer an empty picture on failure. A heap object is released with Release; one on the stack just ends.
/// @code
/// GDIBitmap picture;
/// if (picture.SetDib(block))
///     picture.Draw(dc, target, IBitmap::BM_Fit, XSize<double>(1.0, 1.0));
/// @endcode
class KELCORE_API GDIBitmap : public BitmapBase, virtual public KelUnknown {
public:
    /// Draws from a bitmap (`StretchBlt`). It owns nothing. The device context's stretch mode is COLORONCOLOR
    /// afterwards.
    struct KELCORE_API HBitmapSrc : IBltSrc {
        HBitmapSrc(HBITMAP bitmap, unsigned long rop);
        /// @return false when bitmap or @p dc are null or the system refuses.
        bool Blt(HDC dc, const Rect& source, const Rect& target) const override;

        HBITMAP m_hBitmap;
        unsigned long m_dwRop; ///< the raster operation
    };

    /// Draws from a bitmap and leaves out the pixels of one colour (`TransparentBlt`; on the 95 family with masks). It
    /// owns nothing.
    struct KELCORE_API TransparentSrc : IBltSrc {
        TransparentSrc(HBITMAP bitmap, unsigned long color);
        /// @return false when bitmap or @p dc are null or the system refuses; on the 95 family true once it has begun.
        bool Blt(HDC dc, const Rect& source, const Rect& target) const override;

        HBITMAP m_hBitmap;
        unsigned long m_dwColor; ///< the transparent colour
    };

    /// Blends a bitmap with what is there (`AlphaBlend`). It owns nothing.
    struct KELCORE_API AlphaSrc : IBltSrc {
        AlphaSrc(HBITMAP bitmap, bool perPixel, unsigned char opacity);
        /// @return false when bitmap or @p dc are null or the system refuses; on the 95 family also for sources of one
        ///         row or column.
        bool Blt(HDC dc, const Rect& source, const Rect& target) const override;

        HBITMAP m_hBitmap;
        bool m_bPerPixel;          ///< whether the fourth bytes are alpha, the colours premultiplied with it
        unsigned char m_byOpacity; ///< of the whole, 0 to 255
    };

    /// An empty picture.
    GDIBitmap();
    /// Shares the picture of @p other.
    GDIBitmap(const GDIBitmap& other);
    /// A DIB copy of @p bitmap, which stays the caller's; its colours up to depth 8 come along. Empty if it is null or
    /// cannot be copied.
    GDIBitmap(HBITMAP bitmap);
    /// A DIB copy of the part of @p bitmap inside @p part.
    GDIBitmap(HBITMAP bitmap, const Rect& part);
    /// Shares the picture of @p other.
    const GDIBitmap& operator=(const GDIBitmap& other);
    /// Becomes a DIB copy of @p bitmap like the constructor.
    const GDIBitmap& operator=(HBITMAP bitmap);
    /// Whether both objects share one picture.
    bool operator==(const GDIBitmap& other) const;
    bool operator!=(const GDIBitmap& other) const;

    int GetBitsPerPixel() const override;
    const BITMAPINFO* GetBitmapInfo() const override;
    const char* GetBitmapBits() const override;

    IBitmap* GetClone() const override;
    bool Draw(HDC dc, const Rect& target, BM_Mode mode, XSize<double> scale) const override;
    bool Draw(HDC dc, const Rect& target, const Rect& source, unsigned long rop) const override;
    void SetEmpty() override;
    bool IsEmpty() const override;
    /// A system picture in the display's own format is handed out in the display's depth.
    void* GetDibClone() const override;
    /// A new DIB picture, or, for a depth of 0 or less, a system picture in the display's own format
    /// (`CreateDIBSection`, `CreateCompatibleBitmap`).
    /// @return false when a side is less than 1, the pixels would take 2 GiB or more, or the system refuses; the
    /// picture
    ///         is empty then.
    bool CreateBitmap(const Size& size, int bits) override;
    bool IsEqual(const IBitmap& other) const override;
    /// Shares the picture of another GDIBitmap, copies the pixels and colours of any other.
    /// @return false when the copy cannot be made (this picture is unchanged), or when the memory of @p source cannot
    /// be
    ///         reached (this picture is then a blank one of its size).
    bool AssignBitmap(const IBitmap& source) override;
    bool ClearSurface(unsigned char value) override;
    Size GetDimension() const override;
    /// @return false with the picture unchanged when it cannot be rendered at that size.
    bool Resize(const Size& size) override;
    /// CreatePrescaledBmp of this picture in place. @return false with the picture unchanged when that answers none.
    bool Prescale(const Rect& target, BM_Mode mode, XSize<double> scale, double limit) override;
    const void* LockSurface() const override;
    void* LockSurfaceModify() override;
    void UnlockSurface() const override;
    bool HasPalette() const override;
    int GetNumPaletteEntries() const override;
    const RGBQUAD* LockPalette() const override;
    RGBQUAD* LockPaletteModify() override;
    void UnlockPalette() const override;

protected:
    /// A shared DIB picture is copied; a shared system picture is rendered again when it is in the display's own
    /// format, and becomes a DIB picture otherwise.
    /// @return false when the copy of a DIB picture cannot be made. This picture is empty then, and so it is, with
    /// true, when a system picture cannot be copied; those of the others are not touched.
    bool Detach() override;

public:
    /// Draws like Draw with a mode, without the pixels of the colour @p color.
    virtual bool TransparentDraw(HDC dc, const Rect& target, unsigned long color, BM_Mode mode,
                                 XSize<double> scale) const;
    /// Draws the part @p source into @p target without the pixels of the colour @p color.
    virtual bool TransparentDraw(HDC dc, const Rect& target, const Rect& source, unsigned long color) const;
    /// Draws like Draw with a mode, blended.
    /// @param opacity of the whole, 0.0 to 1.0.
    /// @param perPixel whether the fourth bytes are alpha, the colours premultiplied with it.
    virtual bool AlphaDraw(HDC dc, const Rect& target, double opacity, bool perPixel, BM_Mode mode,
                           XSize<double> scale) const;
    /// Draws the part @p source into @p target, blended.
    virtual bool AlphaDraw(HDC dc, const Rect& target, const Rect& source, double opacity, bool perPixel) const;

    /// Ends this object's share. It stands behind the virtual members, whose slots follow each other.
    ~GDIBitmap() override;

    /// The bitmap, null when the picture is empty. It stays the picture's.
    /// @param exclusive makes the picture this object's alone first, so that the bitmap may be drawn on.
    HBITMAP GetHandle(bool exclusive = false);
    /// Becomes a system picture that owns @p bitmap. If the system cannot describe it (`GetObjectA`), the picture is
    /// empty and the bitmap stays the caller's.
    void AttachBitmap(HBITMAP bitmap);
    /// Gives the bitmap to the caller, who deletes it, and becomes empty.
    /// @return null, and the picture is unchanged, while copies share it.
    HBITMAP DetachBitmap();
    /// Turns a system picture into a DIB picture (`GetDIBits`); one in the display's own format takes the display's
    /// depth.
    /// @return true also for DIB pictures and empty ones; false with the picture unchanged when that fails.
    bool ConvertSysBitmap2DIB();
    /// Replaces the picture by a new system picture: in the display's own format for a depth of 0 or less, otherwise a
    /// device-dependent bitmap of that depth (`CreateBitmap`).
    /// @return false when a side is less than 1 or the system refuses; the picture is empty then.
    bool CreateSysBitmap(const Size& size, int bits);
    /// Replaces the picture by a rendering of @p source, drawn by @p mode into a picture of that size and depth.
    /// @param bits depths up to 8 must be that of @p source, whose colour table is taken over.
    /// @param background fills the bands that BM_Fit and BM_Center leave.
    /// @return false with the picture unchanged when it cannot be made or drawn.
    bool CreateBitmap(const IBitmap& source, const Size& size, int bits, BM_Mode mode, XSize<double> scale,
                      unsigned long background);
    /// Greys the picture for a disabled look: every pixel but those of the colour @p keep becomes the grey
    /// (blue + green + red) / 9 + 128.
    /// @return true for an empty picture; false unless it has depth 24 or 32 and pixel memory.
    bool SetStyleDisabled(unsigned long keep);
    /// Swaps light and dark: the complement of all pixel memory, or of the device's pixels (`InvertRect`).
    /// @return false for an empty picture or when the system refuses.
    bool Invert();

    /// A picture of depth 1 that is 1 (white) where @p source has the colour @p transparent and 0 (black) elsewhere,
    /// stretched to @p size.
    /// @param keepDeviceMask whether it stays a device-dependent bitmap, a system picture.
    static GDIBitmap CreateMaskBmp(const IBitmap& source, const Size& size, unsigned long transparent,
                                   bool keepDeviceMask);
    /// The mask of this picture in its own size, a DIB picture.
    GDIBitmap CreateMaskBmp(unsigned long transparent) const;

    /// Renders @p source as it would be drawn into @p target, at the size it would have there: the target's for
    /// BM_Stretch and BM_Fill, the fitted picture alone for BM_Fit, the visible part for BM_Center and BM_Tile.
    /// @param limit how many times larger in area the result may be; growth must stay below.
    /// @return an empty picture also for an empty source or target, a factor of 0 or less, an unknown mode.
    static GDIBitmap CreatePrescaledBmp(const IBitmap& source, const Rect& target, int bits, BM_Mode mode,
                                        XSize<double> scale, double limit);
    /// The same in the source's depth.
    static GDIBitmap CreatePrescaledBmp(const IBitmap& source, const Rect& target, BM_Mode mode, XSize<double> scale,
                                        double limit);
    /// Keeps the part of the picture inside @p part.
    /// @return true for an empty picture; false when that fails, also for a part outside the picture, which is then
    ///         empty or blank.
    bool Crop(const Rect& part);
    /// Fills the picture with a colour, whatever its kind (`ExtTextOutA`). @return false for an empty picture or when
    /// the system refuses.
    bool ExtClearSurface(unsigned long color);
    /// Fills @p area with a colour.
    bool ExtClearSurface(unsigned long color, const Rect& area);
    /// Makes the colour transparent and everything else opaque for AlphaDraw with alpha per pixel: pixels of the colour
    /// become 0, the fourth bytes of all others 255.
    /// @param unused takes no part.
    /// @return false unless the picture has depth 32 and pixel memory.
    bool SetAlphaTransparence(unsigned long color, double unused);
    /// Turns @p area into an overlay for AlphaDraw with alpha per pixel: pixels of the colour @p key become @p fill at
    /// that opacity, all others of the area 0.
    /// @param opacity 0.0 to 1.0.
    /// @return false unless the picture has depth 32 and pixel memory.
    bool SetAlphaChannel(const Rect& area, unsigned long key, unsigned long fill, double opacity);

private:
    struct Image;

    void Share(Image* image);
    void TakeEmpty();
    bool MakeNew(const Size& size, int bits, bool deviceDependent);
    bool DetachPixels();
    void CopyOf(HBITMAP bitmap, const Rect* part);
    int WorkingDepth() const;
    bool CanWriteAlpha();
    static bool DrawByHandle(const IBitmap& source, HDC dc, const Rect& target, BM_Mode mode, XSize<double> scale);

    Image* m_pImage;
};
