#pragma once

/// @file
/// The two interfaces through which every picture is handled.
///
/// A colour is a COLORREF: red in bits 0 to 7, green in 8 to 15, blue in 16 to 23, zero above. Pixel memory has the
/// order of device-independent bitmaps: rows bottom-up, each padded to a multiple of 4 bytes; 24-bit pixels are blue,
/// green, red; 32-bit pixels have a fourth byte, alpha where a member says so and ignored otherwise; of 1-bit pixels
/// the highest bit of a byte comes first.

#include <kelcore/bitmap/geometry.h>
#include <kelcore/export.h>
#include <kelcore/platform.h>

/// Read access to a picture's measures and memory.
class KELCORE_API IBitmapData : virtual public IUnknown {
public:
    /// Width in pixels, 0 when there is no picture.
    virtual unsigned int GetWidth() const = 0;
    /// Height in pixels, 0 when there is no picture.
    virtual unsigned int GetHeight() const = 0;
    /// The depth: 1, 4, 8, 16, 24 or 32; 0 for no picture and for a picture in the display's own format.
    virtual int GetBitsPerPixel() const = 0;
    /// Bytes from one row of the pixel memory to the next.
    virtual int GetScanlineSize() const = 0;
    /// Header and colour table, null when the class does not show them. They stay the picture's.
    virtual const BITMAPINFO* GetBitmapInfo() const = 0;
    /// The pixel memory, null when there is none or the class does not show it. It stays the picture's.
    virtual const char* GetBitmapBits() const = 0;

protected:
    ~IBitmapData() = default;
};

/// A picture of any class. It is counted like every IUnknown; clients hold it without knowing its class.
///
/// Pointers from LockSurface and LockPalette hold until the picture is changed or emptied. Nothing throws but
/// allocation. A picture with its copies belongs to one thread at a time.
class KELCORE_API IBitmap : virtual public IBitmapData {
public:
    /// How a picture is fitted into a target rectangle. Other values draw like BM_Stretch.
    enum BM_Mode : int {
        BM_Stretch = 0, ///< the whole picture onto the whole target
        BM_Fit = 1,     ///< the whole picture, its aspect kept, centred; bands stay undrawn
        BM_Fill = 2,    ///< the whole target, the aspect kept, the picture cropped alike on two opposite sides
        BM_Center = 3,  ///< at the given scale, centred, cropped to the target
        BM_Tile = 4,    ///< at the given scale, repeated from the target's left top corner
    };

    /// A new object of the same class that holds the same picture, with one reference that is the caller's; null when
    /// there is no memory.
    virtual IBitmap* GetClone() const = 0;
    /// Draws the picture into @p target by the geometry of @p mode.
    /// @param scale factors greater than 0 by which the picture is scaled; with BM_Fit and BM_Fill they are the aspect
    /// of
    ///        its pixels, with BM_Stretch they are not used.
    /// @return true also when there is nothing to draw: no picture, a factor of 0, an empty target.
    virtual bool Draw(HDC dc, const Rect& target, BM_Mode mode, XSize<double> scale) const = 0;
    /// Draws the part @p source of the picture (pixels, rows counted from the top) into @p target with the raster
    /// operation @p rop (SRCCOPY …).
    virtual bool Draw(HDC dc, const Rect& target, const Rect& source, unsigned long rop) const = 0;
    /// Drops the picture.
    virtual void SetEmpty() = 0;
    /// Whether there is no picture.
    virtual bool IsEmpty() const = 0;
    /// The picture as a packed device-independent bitmap in a new movable block (`GlobalAlloc`) that the caller frees;
    /// null when there is no picture or no memory.
    virtual void* GetDibClone() const = 0;
    /// Replaces the picture by a copy of the packed device-independent bitmap of @p size bytes at @p dib.
    virtual bool SetDib(void* dib, int size) = 0;
    /// The same from a movable block (`GlobalAlloc`), which stays the caller's.
    virtual bool SetDib(void* block) = 0;
    /// Replaces the picture by a new one, its colour table all zero.
    /// @param bits the depth; 0 or less asks for the display's own format.
    virtual bool CreateBitmap(const Size& size, int bits) = 0;
    /// Whether @p other is of the same class and shares one stored picture with this one; pixels are not compared.
    virtual bool IsEqual(const IBitmap& other) const = 0;
    /// Replaces the picture by a copy of @p source, which may be of any class.
    virtual bool AssignBitmap(const IBitmap& source) = 0;
    /// Replaces the pixels of the colour @p key by those of @p other; see BitmapBase.
    virtual bool CombineBitmap(const IBitmap& other, unsigned long key) = 0;
    /// Tints @p area, where @p mask is set; see BitmapBase.
    virtual bool AlphaShadeBitmap(const Rect& area, unsigned long tint, unsigned char alpha, const IBitmap* mask) = 0;
    /// Sets every byte of the pixel memory. @return false when there is none.
    virtual bool ClearSurface(unsigned char value) = 0;
    /// Width and height in pixels, (0, 0) when there is no picture.
    virtual Size GetDimension() const = 0;
    /// The pixel in column @p x and row @p y, counted from the left top; see BitmapBase.
    virtual unsigned long GetPixel(int x, int y) const = 0;
    /// Whether a pixel has the colour; see BitmapBase.
    virtual bool ContainsColor(unsigned long color) const = 0;
    /// Rescales the picture.
    virtual bool Resize(const Size& size) = 0;
    /// Replaces the picture by its rendering for a target; see GDIBitmap::CreatePrescaledBmp.
    virtual bool Prescale(const Rect& target, BM_Mode mode, XSize<double> scale, double limit) = 0;
    /// The pixel memory to read, or null. Ends with UnlockSurface.
    virtual const void* LockSurface() const = 0;
    /// The pixel memory to write, after the picture has been made this object's alone; null when that fails or there is
    /// no pixel memory. Ends with UnlockSurface.
    virtual void* LockSurfaceModify() = 0;
    virtual void UnlockSurface() const = 0;
    /// Whether there are entries in the colour table.
    virtual bool HasPalette() const = 0;
    /// How many entries the colour table has.
    virtual int GetNumPaletteEntries() const = 0;
    /// The colour table to read, or null. Ends with UnlockPalette.
    virtual const RGBQUAD* LockPalette() const = 0;
    /// The colour table to write, after the picture has been made this object's alone; null when that fails. Ends with
    /// UnlockPalette.
    virtual RGBQUAD* LockPaletteModify() = 0;
    virtual void UnlockPalette() const = 0;

protected:
    ~IBitmap() = default;
};
