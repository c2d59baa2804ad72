#pragma once

/// @file
/// The objects that are always there.

#include "platform/gdi/BitmapObject.h"

namespace kel::platform {

/// The handle of a stock object, null for another index.
HGDIOBJ StockObject(int index);

/// What a new context has selected.
template <class T>
std::shared_ptr<T> Stock(int index) {
    return FindObject<T>(StockObject(index));
}

/// The monochrome bitmap of one pixel that is selected in a new memory context.
std::shared_ptr<BitmapObject> StockBitmap();

class PaletteObject final : public GdiObject {
public:
    static constexpr GdiType kType = GdiType::Palette;

    explicit PaletteObject(std::vector<RGBQUAD> entries) : GdiObject(kType), m_entries(std::move(entries)) {}

    DWORD PublicType() const override { return OBJ_PAL; }
    int Describe(int size, void* buffer) const override;
    const std::vector<RGBQUAD>& Entries() const { return m_entries; }

private:
    const std::vector<RGBQUAD> m_entries;
};

} // namespace kel::platform
