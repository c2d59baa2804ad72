#include "platform/gdi/StockObjects.h"

#include "platform/gdi/Colours.h"
#include "platform/gdi/Pens.h"
#include "platform/gdi/text/FontObject.h"

#include <array>
#include <cstring>

namespace kel::platform {
namespace {

constexpr int kStockObjects = DC_PEN + 1;

HGDIOBJ AddBrush(UINT style, COLORREF colour) {
    return AddObject(std::make_shared<BrushObject>(LOGBRUSH{style, colour, /*hatch*/ 0}), /*stock*/ true);
}

HGDIOBJ AddPen(UINT style, COLORREF colour) {
    return AddObject(std::make_shared<PenObject>(LOGPEN{style, {0, 0}, colour}), /*stock*/ true);
}

std::array<HGDIOBJ, kStockObjects> MakeStockObjects() {
    std::array<HGDIOBJ, kStockObjects> objects{};
    objects[WHITE_BRUSH] = AddBrush(BS_SOLID, RGB(255, 255, 255));
    objects[LTGRAY_BRUSH] = AddBrush(BS_SOLID, RGB(192, 192, 192));
    objects[GRAY_BRUSH] = AddBrush(BS_SOLID, RGB(128, 128, 128));
    objects[DKGRAY_BRUSH] = AddBrush(BS_SOLID, RGB(64, 64, 64));
    objects[BLACK_BRUSH] = AddBrush(BS_SOLID, RGB(0, 0, 0));
    objects[NULL_BRUSH] = AddBrush(BS_NULL, RGB(0, 0, 0));
    objects[WHITE_PEN] = AddPen(PS_SOLID, RGB(255, 255, 255));
    objects[BLACK_PEN] = AddPen(PS_SOLID, RGB(0, 0, 0));
    objects[NULL_PEN] = AddPen(PS_NULL, RGB(0, 0, 0));
    objects[DC_BRUSH] = AddBrush(BS_SOLID, RGB(255, 255, 255));
    objects[DC_PEN] = AddPen(PS_SOLID, RGB(0, 0, 0));
    for (const int font : {OEM_FIXED_FONT, ANSI_FIXED_FONT, ANSI_VAR_FONT, SYSTEM_FONT, DEVICE_DEFAULT_FONT,
                           SYSTEM_FIXED_FONT, DEFAULT_GUI_FONT})
        objects[static_cast<std::size_t>(font)] = AddObject(MakeStockFont(font), /*stock*/ true);
    const auto& palette = DefaultPalette();
    objects[DEFAULT_PALETTE] = AddObject(
        std::make_shared<PaletteObject>(std::vector<RGBQUAD>(palette.begin(), palette.end())), /*stock*/ true);
    return objects;
}

} // namespace

HGDIOBJ StockObject(int index) {
    static const std::array<HGDIOBJ, kStockObjects> objects = MakeStockObjects();
    return index >= 0 && index < kStockObjects ? objects[static_cast<std::size_t>(index)] : nullptr;
}

std::shared_ptr<BitmapObject> StockBitmap() {
    static const HGDIOBJ bitmap = AddObject(MakeDeviceBitmap(1, 1, PixelFormat::Mono), /*stock*/ true);
    return FindObject<BitmapObject>(bitmap);
}

int PaletteObject::Describe(int size, void* buffer) const {
    const auto count = static_cast<WORD>(m_entries.size());
    if (buffer && size < static_cast<int>(sizeof count))
        return 0;
    if (buffer)
        std::memcpy(buffer, &count, sizeof count);
    return sizeof count;
}

} // namespace kel::platform
