#pragma once

#include <kelcore/bitmap.h>

#include <cstring>
#include <vector>

/// A client's own picture class: a packed bitmap in plain memory, drawn from there. Its memory can be denied.
class MemoryPicture : public BitmapBase, virtual public KelUnknown {
public:
    using BitmapBase::CalculateTableSize;
    using BitmapBase::InternalDraw;
    using BitmapBase::WidthBytes;

    MemoryPicture() = default;
    MemoryPicture(const Size& size, int bits) { CreateBitmap(size, bits); }

    IBitmap* GetClone() const override { return new MemoryPicture(*this); }
    bool Draw(HDC dc, const Rect& target, BM_Mode mode, XSize<double> scale) const override {
        return InternalDraw(DibSrc(Info(), LockSurface(), SRCCOPY), dc, target, mode, scale);
    }
    bool Draw(HDC dc, const Rect& target, const Rect& source, unsigned long rop) const override {
        return DibSrc(Info(), LockSurface(), rop).Blt(dc, source, target);
    }
    void SetEmpty() override { m_dib.clear(); }
    bool IsEmpty() const override { return m_dib.empty(); }
    void* GetDibClone() const override { return nullptr; }
    bool CreateBitmap(const Size& size, int bits) override {
        BITMAPINFOHEADER header = {};
        header.biSize = sizeof header;
        header.biWidth = size.cx;
        header.biHeight = size.cy;
        header.biPlanes = 1;
        header.biBitCount = static_cast<WORD>(bits);
        m_dib.assign(sizeof header + CalculateTableSize(&header) + WidthBytes(size.cx * bits) * size.cy, 0);
        std::memcpy(m_dib.data(), &header, sizeof header);
        return true;
    }
    bool IsEqual(const IBitmap& other) const override { return this == &other; }
    bool AssignBitmap(const IBitmap&) override { return false; }
    bool ClearSurface(unsigned char) override { return false; }
    int GetBitsPerPixel() const override { return IsEmpty() ? 0 : Info()->bmiHeader.biBitCount; }
    Size GetDimension() const override {
        return IsEmpty() ? Size() : Size(Info()->bmiHeader.biWidth, Info()->bmiHeader.biHeight);
    }
    bool Resize(const Size&) override { return false; }
    bool Prescale(const Rect&, BM_Mode, XSize<double>, double) override { return false; }
    const void* LockSurface() const override {
        return IsEmpty() || deniesMemory ? nullptr : m_dib.data() + 40 + CalculateTableSize(&Info()->bmiHeader);
    }
    void* LockSurfaceModify() override { return const_cast<void*>(LockSurface()); }
    void UnlockSurface() const override {}
    bool HasPalette() const override { return GetNumPaletteEntries() > 0; }
    int GetNumPaletteEntries() const override { return IsEmpty() ? 0 : CalculateTableSize(&Info()->bmiHeader) / 4; }
    const RGBQUAD* LockPalette() const override { return Info()->bmiColors; }
    RGBQUAD* LockPaletteModify() override { return const_cast<RGBQUAD*>(LockPalette()); }
    void UnlockPalette() const override {}

    bool deniesMemory = false;

private:
    const BITMAPINFO* Info() const { return reinterpret_cast<const BITMAPINFO*>(m_dib.data()); }

    std::vector<unsigned char> m_dib;
};

/// The bytes of a picture's row, counted from the top.
inline unsigned char* RowOf(IBitmap& picture, int y) {
    auto* const bits = static_cast<unsigned char*>(picture.LockSurfaceModify());
    return bits + (static_cast<int>(picture.GetHeight()) - 1 - y) * picture.GetScanlineSize();
}

/// All bytes of a picture's pixel memory.
inline std::vector<unsigned char> BytesOf(const IBitmap& picture) {
    const auto* const bits = static_cast<const unsigned char*>(picture.LockSurface());
    return {bits, bits + picture.GetScanlineSize() * static_cast<int>(picture.GetHeight())};
}
