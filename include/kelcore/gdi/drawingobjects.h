#pragma once

/// @file
/// Brushes, pens and fonts, which are shared by everyone who asks for the same ones.
///
/// The library keeps a cache of what was created from a description. Whoever asks for an equal description gets the
/// same handle, so that creating the same pens and fonts in every paint cycle costs no system call, and there is one
/// object of the system for each description in use. It is deleted when the last owner lets go of it. A handle from
/// outside (by constructor or Attach) is held but neither counted nor deleted, unless it is one of the cache's: then
/// the object that holds it gives back a count that it never took.
///
/// Equal are brushes of the same style, colour and hatch; pens of the same style, colour and horizontal width; fonts
/// with the same fields, face names compared with case (`_mbscmp`). All null brushes are equal, and so are all null
/// pens. An object that the system refuses to create is not remembered: the next request tries again.
///
/// The cache is not locked: one thread creates, copies and destroys all of these objects. Nothing throws but
/// allocation.

#include <kelcore/export.h>
#include <kelcore/platform.h>
#include <kelcore/widestring.h>

/// A brush.
class KELCORE_API Brush {
public:
    /// Holds nothing.
    Brush();
    /// Shares the brush of @p other.
    Brush(const Brush& other);
    /// Holds @p brush, which stays the caller's.
    Brush(HBRUSH brush);
    /// A solid brush.
    Brush(unsigned long colour);
    Brush(const LOGBRUSH& description);
    ~Brush();
    /// Lets go of its brush and shares that of @p other.
    Brush& operator=(const Brush& other);

    /// Lets go of its brush and holds @p brush, which stays the caller's. @return whether it is not null.
    bool Attach(HBRUSH brush);
    /// Lets go of its brush, which is deleted if it is the cache's and nobody else holds it.
    void Destroy();
    /// Becomes a solid brush. @return false when the system refuses (`CreateBrushIndirect`); nothing is held then.
    bool Create(unsigned long colour);
    /// Becomes the brush of @p description. @return as Create with a colour.
    bool Create(const LOGBRUSH& description);

    HBRUSH m_hBrush; ///< null for none
};

/// A pen.
class KELCORE_API Pen {
public:
    /// Holds nothing.
    Pen();
    /// Shares the pen of @p other.
    Pen(const Pen& other);
    /// Holds @p pen, which stays the caller's.
    Pen(HPEN pen);
    /// @param style a PS_ value. @param width in logical units; 0 is one pixel.
    Pen(int style, int width, unsigned long colour);
    Pen(const LOGPEN& description);
    virtual ~Pen();
    /// Lets go of its pen and shares that of @p other.
    Pen& operator=(const Pen& other);

    /// Becomes a pen. @return false when the system refuses (`CreatePenIndirect`); nothing is held then.
    bool Create(int style, int width, unsigned long colour);
    /// Becomes the pen of @p description; of its width only x counts. @return as Create above.
    bool Create(const LOGPEN& description);
    /// Lets go of its pen and holds @p pen, which stays the caller's. @return whether it is not null.
    bool Attach(HPEN pen);
    /// Lets go of its pen, which is deleted if it is the cache's and nobody else holds it.
    void Destroy();

    HPEN m_hPen; ///< null for none
};

/// A font. Face names longer than the 31 bytes of a description are cut.
class KELCORE_API Font {
public:
    /// Holds nothing.
    Font();
    /// Shares the font of @p other.
    Font(const Font& other);
    /// Holds @p font, which stays the caller's.
    Font(HFONT font);
    Font(const LOGFONTA& description);
    virtual ~Font();
    /// Lets go of its font and shares that of @p other.
    Font& operator=(const Font& other);

    /// Lets go of its font and holds @p font, which stays the caller's. @return whether it is not null.
    bool Attach(HFONT font);
    /// Lets go of its font, which is deleted if it is the cache's and nobody else holds it.
    void Destroy();

    /// Becomes the font described field by field. @param height of a cell, or, negative, of a character; logical units.
    /// @param escapement, orientation in tenths of a degree.
    /// @return as CreateFontIndirectA.
    bool CreateFontA(const WideString& faceName, int height, int width, int escapement, int orientation, int weight,
                     bool italic, bool underline, bool strikeOut, unsigned char charSet, unsigned char outPrecision,
                     unsigned char clipPrecision, unsigned char quality, unsigned char pitchAndFamily);
    /// Becomes the font of @p description, which is not changed.
    /// @return false when the system refuses (`CreateFontIndirectA`); nothing is held then.
    bool CreateFontIndirectA(LOGFONTA& description);
    /// Becomes a font of that face, everything else at its default (DEFAULT_CHARSET).
    /// @param pointSizeTenths the height of a character in tenths of a point: 100 is 13 pixels at 96 dots an inch.
    /// @param dc whose resolution and mapping count; null for the screen's.
    /// @return as CreatePointFontIndirect.
    bool CreatePointFont(int pointSizeTenths, const WideString& faceName, HDC dc);
    /// Becomes the font of @p description, whose height is in tenths of a point.
    /// @return false, with nothing held, also when the resolution or the mapping of @p dc cannot be asked for.
    bool CreatePointFontIndirect(const LOGFONTA& description, HDC dc);

    HFONT m_hFont; ///< null for none
};
