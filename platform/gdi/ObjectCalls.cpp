#include "platform/gdi/DeviceContext.h"
#include "platform/gdi/StockObjects.h"
#include "platform/kernel/Faults.h"

namespace kel::platform {
namespace {

HGDIOBJ SelectBitmap(DeviceContext& context, std::shared_ptr<GdiObject> object) {
    auto bitmap = std::static_pointer_cast<BitmapObject>(std::move(object));
    if (!context.Takes(*bitmap))
        return Fail(ERROR_INVALID_HANDLE), nullptr;
    const HGDIOBJ previous = context.State().bitmap->Handle();
    context.SelectBitmap(std::move(bitmap));
    return previous;
}

template <class T>
HGDIOBJ SelectInto(Selected<T>& place, std::shared_ptr<GdiObject> object) {
    const HGDIOBJ previous = place ? place->Handle() : nullptr;
    place = Selected<T>(std::static_pointer_cast<T>(std::move(object)));
    return previous;
}

HGDIOBJ SelectRegion(DeviceContext& context, const std::shared_ptr<GdiObject>& object) {
    const auto kind = context.SetClip(static_cast<RegionObject&>(*object).Pixels());
    return reinterpret_cast<HGDIOBJ>(static_cast<std::uintptr_t>(kind));
}

HGDIOBJ Select(DeviceContext& context, std::shared_ptr<GdiObject> object) {
    switch (object->Type()) {
    case GdiType::Bitmap:
        return SelectBitmap(context, std::move(object));
    case GdiType::Brush:
        return SelectInto(context.State().brush, std::move(object));
    case GdiType::Pen:
        return SelectInto(context.State().pen, std::move(object));
    case GdiType::Font:
        return SelectInto(context.State().font, std::move(object));
    case GdiType::Region:
        return SelectRegion(context, object);
    default: // contexts, and palettes, which SelectPalette takes
        return Fail(ERROR_INVALID_HANDLE), nullptr;
    }
}

const GdiObject* Current(const ContextState& state, UINT type) {
    switch (type) {
    case OBJ_BITMAP:
        return state.bitmap.Get();
    case OBJ_BRUSH:
        return state.brush.Get();
    case OBJ_PEN:
        return state.pen.Get();
    case OBJ_FONT:
        return state.font.Get();
    case OBJ_PAL:
        return state.palette.Get();
    default:
        return nullptr;
    }
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

HGDIOBJ WINAPI SelectObject(HDC dc, HGDIOBJ handle) {
    if (CallFails("SelectObject"))
        return nullptr;
    const auto context = FindContext(dc);
    if (!context)
        return nullptr;
    auto object = FindAnyObject(handle);
    if (!object)
        return Fail(ERROR_INVALID_HANDLE), nullptr;
    return WithMemory(HGDIOBJ(), [&] { return Select(*context, std::move(object)); });
}

BOOL WINAPI DeleteObject(HGDIOBJ handle) {
    const bool fails = CallFails("DeleteObject");
    const auto object = FindAnyObject(handle);
    if (!object)
        return fails ? FALSE : Fail(ERROR_INVALID_HANDLE);
    return (object->IsStock() || RemoveObject(*object)) && !fails;
}

HGDIOBJ WINAPI GetStockObject(int index) {
    return CallFails("GetStockObject") ? nullptr : StockObject(index);
}

HPALETTE WINAPI SelectPalette(HDC dc, HPALETTE handle, BOOL) {
    if (CallFails("SelectPalette"))
        return nullptr;
    const auto context = FindContext(dc);
    auto palette = context ? FindObject<PaletteObject>(handle) : nullptr;
    if (!palette)
        return nullptr;
    Selected<GdiObject>& place = context->State().palette;
    const HGDIOBJ previous = place->Handle();
    place = Selected<GdiObject>(std::move(palette));
    return static_cast<HPALETTE>(previous);
}

UINT WINAPI RealizePalette(HDC dc) {
    return !CallFails("RealizePalette") && FindContext(dc) ? 0 : GDI_ERROR;
}

HGDIOBJ WINAPI GetCurrentObject(HDC dc, UINT type) {
    if (CallFails("GetCurrentObject"))
        return nullptr;
    const auto context = FindContext(dc);
    const GdiObject* current = context ? Current(context->State(), type) : nullptr;
    return current ? current->Handle() : nullptr;
}

DWORD WINAPI GetObjectType(HGDIOBJ handle) {
    if (CallFails("GetObjectType"))
        return 0;
    const auto object = FindAnyObject(handle);
    return object ? object->PublicType() : Fail(ERROR_INVALID_HANDLE);
}

int WINAPI GetObjectA(HANDLE handle, int size, LPVOID buffer) {
    if (CallFails("GetObjectA"))
        return 0;
    const auto object = FindAnyObject(handle);
    return object ? object->Describe(size, buffer) : Fail(ERROR_INVALID_HANDLE);
}
