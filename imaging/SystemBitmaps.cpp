#include "bitmap/DibLayout.h"
#include "bitmap/PlatformDrawing.h"
#include "imaging/Blocks.h"

#include <kelcore/imaging/picture.h>

namespace kel {
namespace {

constexpr std::int64_t kHeaderBytes = sizeof(BITMAPINFOHEADER);

// The screen with a palette, for as long as a bitmap is copied.
class PaletteScreen {
public:
    explicit PaletteScreen(HPALETTE palette)
        : m_dc(GetDC(/*window*/ nullptr)), m_previous(SelectPalette(m_dc, palette, /*background*/ FALSE)) {
        RealizePalette(m_dc);
    }
    PaletteScreen(const PaletteScreen&) = delete;
    PaletteScreen& operator=(const PaletteScreen&) = delete;
    ~PaletteScreen() {
        SelectPalette(m_dc, m_previous, /*background*/ TRUE);
        RealizePalette(m_dc);
        ReleaseDC(/*window*/ nullptr, m_dc);
    }

    int GetRows(HBITMAP bitmap, WORD rows, void* bits, BITMAPINFO* info) const {
        return GetDIBits(m_dc, bitmap, /*first row*/ 0, rows, bits, info, DIB_RGB_COLORS);
    }

private:
    HDC m_dc;
    HPALETTE m_previous;
};

int DepthFor(const BITMAP& bitmap) {
    const auto bits = static_cast<WORD>(bitmap.bmPlanes * bitmap.bmBitsPixel);
    if (bits > 8)
        return 24;
    if (bits > 4)
        return 8;
    return bits < 2 ? 1 : 4;
}

BITMAPINFOHEADER HeaderFor(const BITMAP& bitmap) {
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof header;
    header.biWidth = bitmap.bmWidth;
    header.biHeight = bitmap.bmHeight;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(DepthFor(bitmap));
    header.biCompression = BI_RGB;
    return header;
}

// A system bitmap on its way into a packed one.
class SystemCopy {
public:
    SystemCopy(HBITMAP bitmap, HPALETTE palette, const BITMAP& description)
        : m_screen(palette), m_bitmap(bitmap), m_header(HeaderFor(description)) {}

    /// @return the block, null when the system refuses.
    HGLOBAL Make() { return HaveHeaderCompleted() && FetchRows() ? m_block.Release() : nullptr; }

private:
    WORD Rows() const { return static_cast<WORD>(m_header.biHeight); }

    bool HaveHeaderCompleted() {
        if (!m_block.Resize(static_cast<SIZE_T>(kHeaderBytes + TableBytes(m_header)), GHND))
            return false;
        const LockedBlock block(m_block.Get());
        if (!block.Bytes())
            return false;
        BITMAPINFO* const info = block.Dib();
        info->bmiHeader = m_header;
        m_screen.GetRows(m_bitmap, Rows(), /*bits*/ nullptr, info);
        m_header = info->bmiHeader;
        if (m_header.biSizeImage == 0)
            info->bmiHeader.biSizeImage = m_header.biSizeImage =
                static_cast<DWORD>(RowBytes(m_header.biWidth, m_header.biBitCount) * m_header.biHeight);
        return true;
    }

    bool FetchRows() {
        const std::int64_t pixels = kHeaderBytes + TableBytes(m_header);
        if (!m_block.Resize(static_cast<SIZE_T>(pixels + m_header.biSizeImage)))
            return false;
        const LockedBlock block(m_block.Get());
        return block.Bytes() && m_screen.GetRows(m_bitmap, Rows(), block.Bytes() + pixels, block.Dib()) != 0;
    }

    PaletteScreen m_screen;
    HBITMAP m_bitmap;
    BITMAPINFOHEADER m_header;
    OwnedBlock m_block;
};

} // namespace
} // namespace kel

bool XPDib::SetDDB(HBITMAP bitmap, HPALETTE palette) {
    BITMAP description = {};
    if (!kel::Describe(bitmap, description))
        return false;
    if (!palette)
        palette = static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE));
    kel::OwnedBlock block(kel::SystemCopy(bitmap, palette, description).Make());
    if (!block.Get())
        return false;
    SetEmpty();
    Detach();
    return TakeBlock(block);
}
