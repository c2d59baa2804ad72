#pragma once

/// @file
/// Device contexts: memory contexts and those of windows.

#include <kelcore/export.h>
#include <kelcore/platform.h>
#include <kelcore/widestring.h>

/// Rectangles one after the other, see IComplexWindowObject. It is counted; whoever was given it releases it.
class IRectEnumerator : virtual public IUnknown {
public:
    /// Stores the next rectangle. @return false when there is none left.
    virtual bool Next(RECT& rect) = 0;

protected:
    ~IRectEnumerator() = default;
};

/// A window that is made of parts which draw themselves. Its class is a client's.
class IComplexWindowObject {
public:
    virtual HWND GetWindowHandle() = 0;
    /// Tells what the window's own drawing must leave out.
    /// @param rects null before the call; becomes an enumerator of rectangles in the units of the device context, which
    ///        the caller releases, or stays null when nothing is left out.
    virtual void GetExcludedRects(IRectEnumerator** rects) = 0;

protected:
    ~IComplexWindowObject() = default;
};

/// The owner of a device context, with the calls that clients draw and measure with.
///
/// The context is deleted (`DeleteDC`) when another one is attached and at the end. An object belongs to the thread
/// that made it. Nothing throws but the conversion of texts, for want of memory; a call that the system refuses gives
/// the system's result, false, or zeros.
/// @code
/// DC memory(CreateCompatibleDC(nullptr), nullptr);
/// HGDIOBJ previous = SelectObject(memory.m_hDC, picture.GetHandle());
/// memory.FillSolidRect(0, 0, 100, 20, GetSysColor(COLOR_ACTIVECAPTION));
/// @endcode
class KELCORE_API DC {
public:
    /// Holds nothing.
    DC();
    /// Takes @p dc over and clips it with SetClipArea. @param object may be null.
    DC(HDC dc, IComplexWindowObject* object);
    DC(const DC&) = delete;
    DC& operator=(const DC&) = delete;
    virtual ~DC();

    /// Destroys what is held and takes @p dc over. @return whether it is not null.
    bool Attach(HDC dc);
    /// Deletes the context, if there is one; nothing is held then.
    void Destroy();
    /// Takes the rectangles that @p object excludes out of the clip region (`ExcludeClipRect`). Null excludes nothing.
    void SetClipArea(IComplexWindowObject* object);

    /// @name Mapping and positions
    /// Each is the call of that name with `Ex` behind it. The setters return the previous value.
    /// @{
    POINT GetBrushOrg() const;
    POINT SetBrushOrg(int x, int y);
    SIZE GetViewportExt() const;
    POINT GetViewportOrg() const;
    SIZE GetWindowExt() const;
    POINT GetWindowOrg() const;
    POINT OffsetViewportOrg(int x, int y);
    POINT OffsetWindowOrg(int x, int y);
    SIZE ScaleViewportExt(int xNum, int xDenom, int yNum, int yDenom);
    SIZE ScaleWindowExt(int xNum, int xDenom, int yNum, int yDenom);
    SIZE SetViewportExt(int cx, int cy);
    POINT SetViewportOrg(int x, int y);
    SIZE SetWindowExt(int cx, int cy);
    POINT SetWindowOrg(int x, int y);
    POINT GetCurrentPosition() const;
    POINT MoveTo(int x, int y);
    SIZE GetAspectRatioFilter() const;
    /// `GetMiterLimit`, which has no `Ex`.
    float GetMiterLimit() const;
    /// @}

    /// Multiplies @p size by the extents of the viewport and divides it by those of the window, without their signs and
    /// rounded as `MulDiv` does. That is not what the system's call of this name does with points.
    void DPtoLP(SIZE& size) const;
    /// The inverse of DPtoLP: multiplies by the window's extents and divides by the viewport's.
    void LPtoDP(SIZE& size) const;

    /// @name Texts
    /// Wide texts reach the calls ending in A as StdW2A converts them, up to their first NUL; what counts characters
    /// there counts bytes.
    /// @{

    /// Lays @p text out in @p rect and draws it (`DrawTextA`). A text that the format shortens is not handed back.
    /// @param rect is set with DT_CALCRECT.
    /// @return the height of the text, 0 on failure.
    int DrawTextA(const WideString& text, RECT& rect, unsigned int format);
    /// Draws @p text (`ExtTextOutA`). @param dx the advance of each byte of the converted text, null for the font's.
    bool ExtTextOutA(int x, int y, unsigned int options, const RECT& rect, const WideString& text, const int* dx);
    /// Draws @p text with tabs (`TabbedTextOutA`).
    /// @return the width in the low and the height in the high 16 bits, 0 on failure.
    long TabbedTextOutA(int x, int y, const WideString& text, int tabCount, int* tabStops, int tabOrigin);
    /// The size of @p text with tabs (`GetTabbedTextExtentA`), (0, 0) on failure.
    SIZE GetTabbedTextExtentA(const WideString& text, int tabCount, int* tabStops) const;
    /// The size of @p text (`GetTextExtentPoint32W`), NUL units included, (0, 0) on failure.
    SIZE GetTextExtent(const WideString& text) const;
    /// Reads the name of the selected font's face (`GetTextFaceA`).
    /// @return its size in bytes with the NUL at the end; 0 on failure, @p face is unchanged or empty then.
    int GetTextFaceA(WideString& face) const;
    /// Draws @p text in a state (`DrawStateA`). @param size (0, 0): that of the text. @param flags DSS_ states.
    /// @param prefixText whether `&` underlines the character behind it. @param brush for DSS_MONO, may be null.
    bool DrawStateA(const POINT& position, const SIZE& size, const WideString& text, unsigned int flags,
                    bool prefixText, HBRUSH brush);
    /// The parts of a character's width: before, in and behind its black box (`GetCharABCWidthsW`). White space counts
    /// as black. Where that call is missing (on the 95 family) or fails, the narrow one is asked; for a character that
    /// the code page lacks, and where both fail, the whole width counts as black (`GetCharWidthW`).
    /// @return true.
    bool GetCharABCWidth(unsigned short ch, ABC& abc) const;
    /// The width of the ink of @p text: the sum of its characters' widths without the part before the first black box
    /// and the part behind the last.
    int GetExactTextWidth(const WideString& text) const;
    /// @}

    /// Fills a rectangle with a colour, which stays the background colour (`SetBkColor`, `ExtTextOutA`).
    void FillSolidRect(int x, int y, int cx, int cy, unsigned long colour);
    /// @copydoc FillSolidRect(int, int, int, int, unsigned long)
    void FillSolidRect(const RECT& rect, unsigned long colour);
    /// Draws a frame of one pixel with the first colour at the left and the top, the second at the right and the
    /// bottom.
    void Draw3dRect(int x, int y, int cx, int cy, unsigned long topLeft, unsigned long bottomRight);

    HDC m_hDC; ///< owned; null for none
};

/// The client area of a window, for the life of the object (`GetDC`, `ReleaseDC`).
class KELCORE_API ClientDC : public DC {
public:
    /// @param window null is the whole screen.
    explicit ClientDC(HWND window);
    /// The client area of @p object, which must not be null, without the parts that it excludes.
    explicit ClientDC(IComplexWindowObject* object);
    /// Gives the context back; it is not deleted.
    ~ClientDC() override;

    HWND m_hWnd;
};

/// A paint cycle of a window, for the life of the object (`BeginPaint`, `EndPaint`).
class KELCORE_API PaintDC : public DC {
public:
    explicit PaintDC(HWND window);
    /// Paints @p object, which must not be null, without the parts that it excludes.
    explicit PaintDC(IComplexWindowObject* object);
    /// Ends the cycle.
    ~PaintDC() override;

    HWND m_hWnd;
    PAINTSTRUCT m_paint; ///< what BeginPaint tells; all zero when it has failed
};

/// A window with its frame, for the life of the object (`GetWindowDC`, `ReleaseDC`).
class KELCORE_API WindowDC : public DC {
public:
    /// @param window null is the whole screen.
    explicit WindowDC(HWND window);
    /// Gives the context back; it is not deleted.
    ~WindowDC() override;

    HWND m_hWnd;
};
