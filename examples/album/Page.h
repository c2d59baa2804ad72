#pragma once

#include "Cards.h"

#include <kelcore/bitmap.h>
#include <kelcore/gdi.h>

namespace kelalbum {

/// A contact sheet: a heading and cards in rows, each a picture in its frame over two lines of text.
class Page {
public:
    /// The area of a picture on a card, in pixels.
    static constexpr Size kPicture = Size(180, 120);

    /// A sheet with nothing but its heading, with room for @p cards cards.
    /// @throws Failure if there is no memory for it.
    Page(const WideString& title, const WideString& note, int cards);
    Page(const Page&) = delete;
    Page& operator=(const Page&) = delete;
    ~Page();

    /// Draws the next card.
    /// @throws Failure if the system refuses to draw the picture.
    void Add(const Card& card, IBitmap::BM_Mode mode);

    const GDIBitmap& Picture() const { return m_sheet; }

private:
    void DrawHeading(const WideString& title, const WideString& note);
    void DrawShadow(const Rect& paper);
    bool DrawPicture(const XPDib& picture, const Rect& area, IBitmap::BM_Mode mode);
    void DrawLine(const WideString& text, const Font& font, COLORREF colour, const Rect& line);
    void DrawFrame(const Rect& area);

    GDIBitmap m_sheet;
    GDIBitmap m_shadow;
    DC m_dc;
    HGDIOBJ m_ownBitmap;
    Font m_titleFont;
    Font m_nameFont;
    Font m_detailFont;
    int m_cards = 0;
};

} // namespace kelalbum
