#include "Icons.h"

namespace {

constexpr COLORREF kKey = RGB(255, 0, 255); // where the icons let the background through

/// Draws with one brush and one pen on the strip of icons.
class Strip {
public:
    Strip() : m_bitmap(CreateBitmap(kIcons * kIconSize, kIconSize, 1, 32, nullptr)), m_dc(CreateCompatibleDC(nullptr)) {
        SelectObject(m_dc, m_bitmap);
        const Brush ground(static_cast<unsigned long>(kKey));
        const RECT all = {0, 0, kIcons * kIconSize, kIconSize};
        FillRect(m_dc, &all, ground.m_hBrush);
    }
    Strip(const Strip&) = delete;
    Strip& operator=(const Strip&) = delete;
    ~Strip() {
        DeleteDC(m_dc);
        DeleteObject(m_bitmap);
    }

    void Disc(int icon, int left, int top, int right, int bottom, COLORREF colour) {
        const Tools tools(m_dc, colour);
        Ellipse(m_dc, icon * kIconSize + left, top, icon * kIconSize + right, bottom);
    }

    void Shape(int icon, const POINT* points, int count, COLORREF colour) {
        const Tools tools(m_dc, colour);
        POINT moved[16];
        for (int i = 0; i < count; ++i)
            moved[i] = {points[i].x + icon * kIconSize, points[i].y};
        Polygon(m_dc, moved, count);
    }

    // The bitmap is free for others once nothing is drawn on it any more.
    HBITMAP Finish() {
        DeleteDC(m_dc);
        m_dc = nullptr;
        return m_bitmap;
    }

private:
    struct Tools {
        Tools(HDC dc, COLORREF colour)
            : m_dc(dc), m_brush(static_cast<unsigned long>(colour)), m_pen(PS_SOLID, 1, RGB(40, 40, 48)),
              m_oldBrush(SelectObject(dc, m_brush.m_hBrush)), m_oldPen(SelectObject(dc, m_pen.m_hPen)) {}
        Tools(const Tools&) = delete;
        Tools& operator=(const Tools&) = delete;
        ~Tools() {
            SelectObject(m_dc, m_oldBrush);
            SelectObject(m_dc, m_oldPen);
        }

        HDC m_dc;
        Brush m_brush;
        Pen m_pen;
        HGDIOBJ m_oldBrush;
        HGDIOBJ m_oldPen;
    };

    HBITMAP m_bitmap;
    HDC m_dc;
};

void DrawStrip(Strip& strip) {
    const POINT shaft[] = {{10, 5}, {14, 5}, {14, 15}, {20, 12}, {18, 20}, {12, 23}, {6, 20}, {4, 12}, {10, 15}};
    const POINT tower[] = {{9, 9}, {15, 9}, {18, 23}, {6, 23}};
    const POINT roof[] = {{7, 8}, {12, 1}, {17, 8}};
    const POINT crest[] = {{1, 20}, {4, 10}, {11, 4}, {18, 6}, {21, 11}, {15, 9}, {12, 13}, {16, 18}, {23, 20}};
    const POINT mark[] = {{14, 14}, {23, 14}, {23, 23}, {14, 23}};
    strip.Disc(kIconAnchor, 9, 0, 15, 6, RGB(190, 196, 206));
    strip.Shape(kIconAnchor, shaft, 9, RGB(96, 112, 136));
    strip.Shape(kIconLight, tower, 4, RGB(232, 226, 214));
    strip.Shape(kIconLight, roof, 3, RGB(208, 60, 48));
    strip.Shape(kIconWave, crest, 9, RGB(64, 148, 208));
    strip.Shape(kIconMark, mark, 4, RGB(255, 214, 64));
}

} // namespace

bool MakeIcons(ImageList& icons) {
    Strip strip;
    DrawStrip(strip);
    return icons.Create(kIconSize, kIconSize, ILC_COLOR32 | ILC_MASK, kIcons, 1) &&
           ImageList_AddMasked(icons.m_hImageList, strip.Finish(), kKey) == 0 &&
           ImageList_SetOverlayImage(icons.m_hImageList, kIconMark, kMarkOverlay);
}

void PaintIcon(ImageList& icons, int icon, HDC dc, int x, int y, unsigned int style) {
    IMAGELISTDRAWPARAMS parameters = {};
    parameters.i = icon;
    parameters.hdcDst = dc;
    parameters.x = x;
    parameters.y = y;
    parameters.rgbBk = CLR_NONE;
    parameters.rgbFg = CLR_DEFAULT;
    parameters.fStyle = style;
    icons.DrawIndirect(parameters);
}
