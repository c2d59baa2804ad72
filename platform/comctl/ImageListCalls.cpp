#include "platform/comctl/ImageListHandles.h"

#include "platform/kernel/Faults.h"
#include "platform/kernel/LastError.h"
#include "platform/modules/Guarded.h"
#include "platform/user/HandleMap.h"

#include <kelcore/platform/testing.h>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace kel::platform {
namespace {

HandleMap<HIMAGELIST, ImageList>& Lists() {
    static auto& lists = *new HandleMap<HIMAGELIST, ImageList>; // outlives static objects that own lists
    return lists;
}

HIMAGELIST Duplicate(const ImageList& list) {
    auto copy = std::make_shared<ImageList>(list.Size(), list.Flags(), list.Grow());
    return copy->CopyFrom(list) ? OpenList(std::move(copy)) : nullptr;
}

// A mask of the pixels of one colour.
OwnedBitmap MaskOfColour(HBITMAP image, COLORREF colour) {
    BITMAP description;
    if (!GetObjectA(image, sizeof description, &description))
        return nullptr;
    const SIZE size{description.bmWidth, description.bmHeight};
    void* bits = nullptr;
    const OwnedBitmap copy = MakeSection({size.cx, -size.cy}, 32, &bits);
    const BitmapContext target(copy.get());
    const BitmapContext source(image);
    if (!target.Ready() || !source.Ready() || !BitBlt(target.Dc(), 0, 0, size.cx, size.cy, source.Dc(), 0, 0, SRCCOPY))
        return nullptr;
    const auto* pixel = static_cast<const std::uint32_t*>(bits);
    const std::uint32_t key =
        colour == CLR_DEFAULT
            ? *pixel & 0xFFFFFF
            : static_cast<std::uint32_t>(RGB(GetBValue(colour), GetGValue(colour), GetRValue(colour)));
    const std::size_t rowBytes = (static_cast<std::size_t>(size.cx) + 15) / 16 * 2;
    std::vector<BYTE> mask(rowBytes * static_cast<std::size_t>(size.cy));
    for (int y = 0; y < size.cy; ++y)
        for (int x = 0; x < size.cx; ++x, ++pixel)
            if ((*pixel & 0xFFFFFF) == key)
                mask[static_cast<std::size_t>(y) * rowBytes + static_cast<std::size_t>(x) / 8] |=
                    static_cast<BYTE>(0x80 >> x % 8);
    return OwnedBitmap(CreateBitmap(size.cx, size.cy, 1, 1, mask.data()));
}

} // namespace

std::shared_ptr<ImageList> FindList(HIMAGELIST handle) {
    auto list = Lists().Find(handle);
    return list ? list : (Fail(ERROR_INVALID_HANDLE), nullptr);
}

std::shared_ptr<ImageList> FindListWith(HIMAGELIST handle, int index) {
    auto list = FindList(handle);
    if (list && !list->Has(index))
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    return list;
}

HIMAGELIST OpenList(std::shared_ptr<ImageList> list) {
    return Lists().Add(std::move(list));
}

std::size_t ImageLists() {
    return Lists().Count();
}

} // namespace kel::platform

using namespace kel::platform;

HIMAGELIST WINAPI ImageList_Create(int cx, int cy, UINT flags, int initial, int grow) {
    if (CallFails("ImageList_Create"))
        return nullptr;
    if (cx < 1 || cy < 1)
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    return Guarded([&]() -> HIMAGELIST {
        auto list = std::make_shared<ImageList>(SIZE{cx, cy}, flags, grow);
        return list->Reserve(std::max(initial, 1)) ? OpenList(std::move(list)) : nullptr;
    });
}

BOOL WINAPI ImageList_Destroy(HIMAGELIST list) {
    const bool fails = CallFails("ImageList_Destroy");
    if (!Lists().Remove(list))
        return fails ? FALSE : Fail(ERROR_INVALID_HANDLE);
    return !fails;
}

HIMAGELIST WINAPI ImageList_Duplicate(HIMAGELIST handle) {
    if (CallFails("ImageList_Duplicate"))
        return nullptr;
    const auto list = FindList(handle);
    return list ? Guarded([&] { return Duplicate(*list); }) : nullptr;
}

int WINAPI ImageList_GetImageCount(HIMAGELIST handle) {
    const auto list = FindList(handle);
    return list ? list->Count() : 0;
}

BOOL WINAPI ImageList_SetImageCount(HIMAGELIST handle, UINT count) {
    if (CallFails("ImageList_SetImageCount"))
        return FALSE;
    const auto list = FindList(handle);
    if (!list)
        return FALSE;
    if (count > INT32_MAX)
        return Fail(ERROR_INVALID_PARAMETER);
    return Guarded([&] { return list->SetCount(static_cast<int>(count)); });
}

int WINAPI ImageList_Add(HIMAGELIST handle, HBITMAP image, HBITMAP mask) {
    if (CallFails("ImageList_Add"))
        return -1;
    const auto list = FindList(handle);
    // 0 stands for a lack of memory too.
    return list ? Guarded([&] { return list->Add(image, mask) + 1; }) - 1 : -1;
}

int WINAPI ImageList_AddMasked(HIMAGELIST handle, HBITMAP image, COLORREF transparent) {
    if (CallFails("ImageList_AddMasked"))
        return -1;
    const auto list = FindList(handle);
    if (!list)
        return -1;
    return Guarded([&] {
               const OwnedBitmap mask = MaskOfColour(image, transparent);
               return mask ? list->Add(image, mask.get()) + 1 : 0;
           }) -
           1;
}

BOOL WINAPI ImageList_Replace(HIMAGELIST handle, int index, HBITMAP image, HBITMAP mask) {
    if (CallFails("ImageList_Replace"))
        return FALSE;
    const auto list = FindListWith(handle, index);
    return list && Guarded([&] { return list->Replace(index, image, mask); });
}

BOOL WINAPI ImageList_Remove(HIMAGELIST handle, int index) {
    if (CallFails("ImageList_Remove"))
        return FALSE;
    const auto list = index == -1 ? FindList(handle) : FindListWith(handle, index);
    return list && Guarded([&] { return index == -1 ? list->SetCount(0) : list->Remove(index); });
}

BOOL WINAPI ImageList_GetImageInfo(HIMAGELIST handle, int index, IMAGEINFO* info) {
    if (CallFails("ImageList_GetImageInfo"))
        return FALSE;
    const auto list = FindListWith(handle, index);
    if (!list || !info)
        return FALSE;
    const int left = list->Left(index);
    *info = {list->Images(), list->Masks(), 0, 0, {left, 0, left + list->Size().cx, list->Size().cy}};
    return TRUE;
}

BOOL WINAPI ImageList_GetIconSize(HIMAGELIST handle, int* cx, int* cy) {
    if (CallFails("ImageList_GetIconSize"))
        return FALSE;
    const auto list = FindList(handle);
    if (!list || !cx || !cy)
        return FALSE;
    *cx = list->Size().cx;
    *cy = list->Size().cy;
    return TRUE;
}

BOOL WINAPI ImageList_SetIconSize(HIMAGELIST handle, int cx, int cy) {
    if (CallFails("ImageList_SetIconSize"))
        return FALSE;
    const auto list = FindList(handle);
    if (!list)
        return FALSE;
    if (cx < 1 || cy < 1)
        return Fail(ERROR_INVALID_PARAMETER);
    list->Clear({cx, cy});
    return TRUE;
}

COLORREF WINAPI ImageList_SetBkColor(HIMAGELIST handle, COLORREF colour) {
    if (CallFails("ImageList_SetBkColor"))
        return CLR_NONE;
    const auto list = FindList(handle);
    return list ? std::exchange(list->background, colour) : CLR_NONE;
}

COLORREF WINAPI ImageList_GetBkColor(HIMAGELIST handle) {
    const auto list = FindList(handle);
    return list ? list->background : CLR_NONE;
}

BOOL WINAPI ImageList_SetOverlayImage(HIMAGELIST handle, int image, int overlay) {
    if (CallFails("ImageList_SetOverlayImage"))
        return FALSE;
    const auto list = FindListWith(handle, image);
    if (!list)
        return FALSE;
    if (overlay < 1 || overlay > ImageList::kOverlays)
        return Fail(ERROR_INVALID_PARAMETER);
    list->overlays[static_cast<std::size_t>(overlay)] = image;
    return TRUE;
}

BOOL WINAPI ImageList_DrawIndirect(IMAGELISTDRAWPARAMS* parameters) {
    if (CallFails("ImageList_DrawIndirect"))
        return FALSE;
    if (!parameters || parameters->cbSize < IMAGELISTDRAWPARAMS_V3_SIZE || parameters->cbSize > sizeof *parameters)
        return Fail(ERROR_INVALID_PARAMETER);
    const auto list = FindListWith(parameters->himl, parameters->i);
    return list && Guarded([&] { return Draw(*list, *parameters); });
}

BOOL WINAPI ImageList_DrawEx(HIMAGELIST list, int index, HDC dc, int x, int y, int cx, int cy, COLORREF background,
                             COLORREF foreground, UINT style) {
    IMAGELISTDRAWPARAMS parameters = {};
    parameters.cbSize = sizeof parameters;
    parameters.himl = list;
    parameters.i = index;
    parameters.hdcDst = dc;
    parameters.x = x;
    parameters.y = y;
    parameters.cx = cx;
    parameters.cy = cy;
    parameters.rgbBk = background;
    parameters.rgbFg = foreground;
    parameters.fStyle = style;
    parameters.dwRop = SRCCOPY;
    return ImageList_DrawIndirect(&parameters);
}

BOOL WINAPI ImageList_Draw(HIMAGELIST list, int index, HDC dc, int x, int y, UINT style) {
    return ImageList_DrawEx(list, index, dc, x, y, /*cx*/ 0, /*cy*/ 0, CLR_DEFAULT, CLR_DEFAULT, style);
}
