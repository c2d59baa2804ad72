#pragma once

#include "tests/support/Faults.h"

#include <kelcore/platform.h>

#include <cstring>
#include <initializer_list>
#include <string>
#include <tuple>
#include <utility>

/// A BITMAPINFO with room for every colour table.
struct DibInfo {
    BITMAPINFOHEADER header;
    RGBQUAD table[256];

    DibInfo(int width, int height, int bits, DWORD compression = BI_RGB) {
        std::memset(this, 0, sizeof *this);
        header.biSize = sizeof header;
        header.biWidth = width;
        header.biHeight = height;
        header.biPlanes = 1;
        header.biBitCount = static_cast<WORD>(bits);
        header.biCompression = compression;
    }

    DibInfo& Masks(DWORD red, DWORD green, DWORD blue) {
        const DWORD masks[] = {red, green, blue};
        std::memcpy(table, masks, sizeof masks);
        return *this;
    }

    operator BITMAPINFO*() { return reinterpret_cast<BITMAPINFO*>(this); }
    COLORREF Colour(int i) const { return RGB(table[i].rgbRed, table[i].rgbGreen, table[i].rgbBlue); }
};

/// A drawing object that is deleted at the end.
template <class Handle>
struct Owned {
    explicit Owned(Handle object) : handle(object) {}
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    ~Owned() { DeleteObject(handle); }

    operator Handle() const { return handle; }

    const Handle handle;
};

/// A DIB section that is deleted at the end.
struct Section {
    explicit Section(DibInfo info) {
        void* memory = nullptr;
        handle = CreateDIBSection(nullptr, info, DIB_RGB_COLORS, &memory, nullptr, 0);
        bytes = static_cast<BYTE*>(memory);
    }
    Section(int width, int height, int bits) : Section(DibInfo(width, height, bits)) {}
    Section(const Section&) = delete;
    Section& operator=(const Section&) = delete;
    ~Section() { DeleteObject(handle); }

    HBITMAP handle;
    BYTE* bytes = nullptr;
};

/// A memory context that is deleted at the end.
struct MemoryContext {
    MemoryContext() : dc(CreateCompatibleDC(nullptr)) {}
    explicit MemoryContext(HGDIOBJ bitmap) : MemoryContext() { SelectObject(dc, bitmap); }
    MemoryContext(const MemoryContext&) = delete;
    MemoryContext& operator=(const MemoryContext&) = delete;
    ~MemoryContext() { DeleteDC(dc); }

    operator HDC() const { return dc; }

    HDC dc;
};

/// A context of a window's client area, or of the screen, for a scope.
struct WindowContext {
    explicit WindowContext(HWND shown = nullptr) : window(shown), dc(GetDC(shown)) {}
    WindowContext(const WindowContext&) = delete;
    WindowContext& operator=(const WindowContext&) = delete;
    ~WindowContext() { ReleaseDC(window, dc); }

    operator HDC() const { return dc; }

    HWND window;
    HDC dc;
};

/// Another colour of the system for a scope.
class Recoloured {
public:
    Recoloured(int index, COLORREF colour) : m_index(index), m_previous(GetSysColor(index)) { Set(colour); }
    Recoloured(const Recoloured&) = delete;
    Recoloured& operator=(const Recoloured&) = delete;
    ~Recoloured() { Set(m_previous); }

private:
    void Set(COLORREF colour) const { CHECK(SetSysColors(1, &m_index, &colour)); }

    int m_index;
    COLORREF m_previous;
};

/// What an object tells of itself.
template <class Description>
Description Told(HGDIOBJ object) {
    Description told{};
    CHECK(GetObjectA(object, sizeof told, &told) != 0);
    return told;
}

/// Bytes as digits, two a byte and no spaces.
inline std::string Hex(const void* bytes, std::size_t count) {
    std::string digits;
    for (std::size_t i = 0; i < count; ++i) {
        const BYTE byte = static_cast<const BYTE*>(bytes)[i];
        digits += "0123456789abcdef"[byte >> 4];
        digits += "0123456789abcdef"[byte & 15];
    }
    return digits;
}

/// Numbers with spaces between them.
inline std::string Text(const SIZE& size) {
    return std::to_string(size.cx) + " " + std::to_string(size.cy);
}

inline std::string Text(const POINT& point) {
    return Text(SIZE{point.x, point.y});
}

inline std::string Text(const RECT& rect) {
    return Text(SIZE{rect.left, rect.top}) + " " + Text(SIZE{rect.right, rect.bottom});
}

/// Maps a window's extents to a viewport's.
inline void Scale(HDC dc, SIZE window, SIZE viewport) {
    SetMapMode(dc, MM_ANISOTROPIC);
    SetWindowExtEx(dc, window.cx, window.cy, nullptr);
    SetViewportExtEx(dc, viewport.cx, viewport.cy, nullptr);
}
