#include "platform/comctl/ImageList.h"

#include "platform/comctl/ImageListHandles.h"
#include "platform/kernel/Faults.h"
#include "platform/kernel/LastError.h"
#include "platform/modules/Guarded.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace kel::platform {
namespace {

/// Whether two lengths that far from each other make one.
bool Fit(LONG a, LONG b, int distance) {
    return std::abs(std::int64_t{distance}) + std::max(a, b) <= INT32_MAX;
}

/// Where two images lie in one that holds both.
struct Layout {
    POINT first;
    POINT second;
    SIZE size;

    Layout(SIZE a, SIZE b, int dx, int dy)
        : first{std::max(0, -dx), std::max(0, -dy)}, second{std::max(0, dx), std::max(0, dy)},
          size{std::max(first.x + a.cx, second.x + b.cx), std::max(first.y + a.cy, second.y + b.cy)} {}
};

// What the image covers becomes zero in the mask, which is white at first.
bool AddMask(HDC mask, POINT at, const ImageList& list, int index) {
    const SIZE size = list.Size();
    if (!list.HasMasks())
        return PatBlt(mask, at.x, at.y, size.cx, size.cy, BLACKNESS);
    const BitmapContext masks(list.Masks());
    return masks.Ready() && BitBlt(mask, at.x, at.y, size.cx, size.cy, masks.Dc(), list.Left(index), 0, SRCAND);
}

bool AddImage(HDC image, POINT at, const ImageList& list, int index) {
    IMAGELISTDRAWPARAMS wanted = {};
    wanted.i = index;
    wanted.hdcDst = image;
    wanted.x = at.x;
    wanted.y = at.y;
    wanted.rgbFg = CLR_DEFAULT;
    wanted.fStyle = ILD_TRANSPARENT;
    return Draw(list, wanted);
}

HIMAGELIST Merge(const ImageList& first, int firstIndex, const ImageList& second, int secondIndex, int dx, int dy) {
    const Layout layout(first.Size(), second.Size(), dx, dy);
    const OwnedBitmap picture = MakeSection(layout.size, 32);
    const OwnedBitmap hidden(CreateBitmap(layout.size.cx, layout.size.cy, 1, 1, nullptr));
    {
        const BitmapContext image(picture.get());
        const BitmapContext mask(hidden.get());
        if (!image.Ready() || !mask.Ready() || !PatBlt(mask.Dc(), 0, 0, layout.size.cx, layout.size.cy, WHITENESS) ||
            !AddMask(mask.Dc(), layout.first, first, firstIndex) ||
            !AddMask(mask.Dc(), layout.second, second, secondIndex) ||
            !AddImage(image.Dc(), layout.first, first, firstIndex) ||
            !AddImage(image.Dc(), layout.second, second, secondIndex))
            return nullptr;
    }
    auto merged = std::make_shared<ImageList>(layout.size, first.Flags() | ILC_MASK, first.Grow());
    return merged->Add(picture.get(), hidden.get()) == 0 ? OpenList(std::move(merged)) : nullptr;
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

HIMAGELIST WINAPI ImageList_Merge(HIMAGELIST first, int firstIndex, HIMAGELIST second, int secondIndex, int dx,
                                  int dy) {
    if (CallFails("ImageList_Merge"))
        return nullptr;
    const auto below = FindListWith(first, firstIndex);
    const auto above = below ? FindListWith(second, secondIndex) : nullptr;
    if (above && !(Fit(below->Size().cx, above->Size().cx, dx) && Fit(below->Size().cy, above->Size().cy, dy)))
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    return above ? Guarded([&] { return Merge(*below, firstIndex, *above, secondIndex, dx, dy); }) : nullptr;
}
