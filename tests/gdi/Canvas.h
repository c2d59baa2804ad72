#pragma once

#include <kelcore/gdi.h>

#include <vector>

/// A picture of 32 bits a pixel to draw on.
struct Canvas {
    Canvas(int width, int height) : size{width, height} {
        const BITMAPINFO info = {{sizeof(BITMAPINFOHEADER), width, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
        void* memory = nullptr;
        bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &memory, nullptr, 0);
        pixels = static_cast<const DWORD*>(memory);
        previous = SelectObject(dc.m_hDC, bitmap);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas() {
        SelectObject(dc.m_hDC, previous);
        DeleteObject(bitmap);
    }
    // From memory: GetPixel sees nothing outside the clip region.
    COLORREF At(int x, int y) const {
        GdiFlush();
        const DWORD pixel = pixels[(size.cy - 1 - y) * size.cx + x];
        return RGB(pixel >> 16, pixel >> 8, pixel);
    }
    std::vector<DWORD> Pixels() const {
        GdiFlush();
        return {pixels, pixels + size.cx * size.cy};
    }

    SIZE size;
    DC dc{CreateCompatibleDC(nullptr), nullptr};
    HBITMAP bitmap;
    const DWORD* pixels;
    HGDIOBJ previous;
};
