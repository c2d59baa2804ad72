#pragma once

#include "tests/platform/Drawing.h"

#include <kelcore/gdi.h>

#include <vector>

inline LOGFONTA Arial(LONG height, LONG weight = FW_NORMAL) {
    return {height, 0, 0, 0, weight, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, "Arial"};
}

inline bool operator==(const ABC& left, const ABC& right) {
    return left.abcA == right.abcA && left.abcB == right.abcB && left.abcC == right.abcC;
}

/// A picture of 32 bits a pixel to draw on.
struct Canvas {
    Canvas(int width, int height) : size{width, height}, section(width, height, 32) {
        previous = SelectObject(dc.m_hDC, section.handle);
    }
    // From memory: GetPixel sees nothing outside the clip region.
    COLORREF At(int x, int y) const {
        const DWORD pixel = Pixels()[static_cast<std::size_t>((size.cy - 1 - y) * size.cx + x)];
        return RGB(pixel >> 16, pixel >> 8, pixel);
    }
    std::vector<DWORD> Pixels() const {
        GdiFlush();
        const auto* const pixels = reinterpret_cast<const DWORD*>(section.bytes);
        return {pixels, pixels + size.cx * size.cy};
    }

    SIZE size;
    Section section;
    DC dc{CreateCompatibleDC(nullptr), nullptr};
    HGDIOBJ previous;
};
