#include "bitmap/ImageRecord.h"

#include "bitmap/DibLayout.h"
#include "bitmap/PlatformDrawing.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

static_assert(sizeof(void*) != 4 || sizeof(GDIBitmap) == 16, "tables, record, count");

namespace {

// A header with room for the largest colour table.
struct ScratchInfo {
    BITMAPINFOHEADER header = {};
    RGBQUAD table[256] = {};

    BITMAPINFO* Get() { return reinterpret_cast<BITMAPINFO*>(this); }
};

BITMAPINFOHEADER HeaderOf(const Size& size, int depth) {
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof header;
    header.biWidth = size.cx;
    header.biHeight = size.cy;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(std::max(depth, 0));
    header.biCompression = BI_RGB;
    return header;
}

// The system writes into the header what it has found; it gets back what every header of ours says.
bool ReadRows(HDC dc, HBITMAP from, BITMAPINFO* info, void* rows) {
    const BITMAPINFOHEADER header = info->bmiHeader;
    const int got = GetDIBits(dc, from, 0, static_cast<UINT>(header.biHeight), rows, info, DIB_RGB_COLORS);
    info->bmiHeader = header;
    return got != 0;
}

} // namespace

void GDIBitmap::Image::Release() {
    if (--refCount > 0)
        return;
    if (handle)
        DeleteObject(handle);
    std::free(info);
    delete this;
}

bool GDIBitmap::Image::Describe(const Size& size, int depth) {
    const BITMAPINFOHEADER header = HeaderOf(size, depth);
    const auto tableBytes = static_cast<std::size_t>(kel::TableBytes(header));
    void* const block = std::malloc(sizeof header + tableBytes);
    if (!block)
        return false;
    std::memcpy(block, &header, sizeof header);
    std::memset(static_cast<char*>(block) + sizeof header, 0, tableBytes);
    info = static_cast<BITMAPINFO*>(block);
    bits = nullptr;
    screenCompatible = false;
    return true;
}

bool GDIBitmap::Image::MakeHandle(bool deviceDependent) {
    const BITMAPINFOHEADER& header = info->bmiHeader;
    screenCompatible = header.biBitCount == 0;
    if (deviceDependent && !screenCompatible) {
        handle = ::CreateBitmap(header.biWidth, header.biHeight, /*planes*/ 1, header.biBitCount, /*bits*/ nullptr);
        return handle != nullptr;
    }
    const HDC screen = GetDC(nullptr);
    if (screenCompatible)
        handle = CreateCompatibleBitmap(screen, header.biWidth, header.biHeight);
    else
        handle = CreateDIBSection(screen, info, DIB_RGB_COLORS, &bits, /*section*/ nullptr, 0);
    ReleaseDC(nullptr, screen);
    return handle != nullptr;
}

void GDIBitmap::Image::ReplaceHandle(HBITMAP bitmap) {
    DeleteObject(handle);
    handle = bitmap;
    bits = nullptr;
}

std::size_t GDIBitmap::Image::TableSize() const {
    return static_cast<std::size_t>(kel::TableBytes(info->bmiHeader) / 4);
}

std::size_t GDIBitmap::Image::PixelBytes() const {
    const BITMAPINFOHEADER& header = info->bmiHeader;
    return static_cast<std::size_t>(kel::RowBytes(header.biWidth, header.biBitCount) * header.biHeight);
}

bool GDIBitmap::Image::FollowTable(HDC dc) const {
    if (!HasBitmapTable())
        return true;
    return SetDIBColorTable(dc, 0, static_cast<UINT>(TableSize()), Table()) != 0;
}

bool GDIBitmap::Image::FollowTable() const {
    if (!HasBitmapTable())
        return true;
    kel::MemoryContext context;
    return context.Select(handle) && FollowTable(context.Get());
}

// Without memory for rows the system tells the colour table alone.
bool GDIBitmap::Image::TakeTable(HBITMAP bitmap) {
    if (Depth() > 8)
        return true;
    ScratchInfo scratch;
    scratch.header = info->bmiHeader;
    const kel::MemoryContext context;
    const auto rows = static_cast<UINT>(scratch.header.biHeight);
    if (GetDIBits(context.Get(), bitmap, 0, rows, /*bits*/ nullptr, scratch.Get(), DIB_RGB_COLORS) == 0)
        return false;
    std::copy_n(scratch.table, TableSize(), Table());
    return true;
}

bool GDIBitmap::Image::FetchFrom(HDC dc, HBITMAP bitmap) {
    return ReadRows(dc, bitmap, info, bits);
}

bool GDIBitmap::Image::WriteRows(BITMAPINFO* header, void* rows) const {
    if (!bits)
        return ReadRows(kel::MemoryContext().Get(), handle, header, rows);
    std::memcpy(rows, bits, PixelBytes());
    return true;
}

bool GDIBitmap::Image::CopyTable(const IBitmap& source) {
    const auto* const bitmap = dynamic_cast<const GDIBitmap*>(&source);
    if (bitmap && bitmap->m_pImage->handle && !bitmap->m_pImage->bits)
        return TakeTable(bitmap->m_pImage->handle);
    const RGBQUAD* const table = source.LockPalette();
    if (!table)
        return false;
    const auto entries = static_cast<std::size_t>(std::max(source.GetNumPaletteEntries(), 0));
    std::copy_n(table, std::min(entries, TableSize()), Table());
    source.UnlockPalette();
    return true;
}

bool GDIBitmap::Image::CopyFrom(const IBitmap& source) {
    const void* const pixels = source.LockSurface();
    const bool copied = pixels && bits && CopyTable(source);
    if (copied)
        std::memcpy(bits, pixels, PixelBytes());
    if (pixels)
        source.UnlockSurface();
    return copied;
}
