// Effects that move pixels as they are, at every depth.

#include "toolkit/effects/Effect.h"
#include "toolkit/effects/Rework.h"
#include "toolkit/effects/Turns.h"

#include <algorithm>
#include <utility>

namespace kel::toolkit::effects {
namespace {

/// Fills each pixel with the one that `place(x, y)` names.
template <class Place>
void MovePixels(const DibLock& from, const DibLock& to, Place place) {
    WithPixels(to.Layout().depth, [&](auto pixels) {
        for (int y = 0; y < to.Layout().height; ++y)
            for (int x = 0; x < to.Layout().width; ++x) {
                const std::pair<int, int> source = place(x, y);
                pixels.Store(to.Row(y), x, pixels.Load(from.Row(source.second), source.first));
            }
    });
}

/// The pixel of @p from in whose place the middle of pixel @p at of @p to falls.
int Nearest(int at, int from, int to) {
    return static_cast<int>((2 * std::int64_t{at} + 1) * from / (2 * std::int64_t{to}));
}

} // namespace

HRESULT Flip(PackedDib& picture) {
    const DibLock lock(picture);
    if (!lock)
        return E_OUTOFMEMORY;
    for (int top = 0, bottom = lock.Layout().height - 1; top < bottom; ++top, --bottom)
        std::swap_ranges(lock.Row(top), lock.Row(top) + lock.Layout().rowBytes, lock.Row(bottom));
    return S_OK;
}

HRESULT Mirror(PackedDib& picture) {
    const DibLock lock(picture);
    if (!lock)
        return E_OUTOFMEMORY;
    WithPixels(lock.Layout().depth, [&lock](auto pixels) {
        for (int y = 0; y < lock.Layout().height; ++y)
            MirrorRow(pixels, lock.Row(y), lock.Layout().width);
    });
    return S_OK;
}

HRESULT ResizeTo(PackedDib& picture, WORD width, WORD height) {
    const int oldWidth = picture.Layout().width;
    const int oldHeight = picture.Layout().height;
    const int newWidth = std::max<int>(width, 1);
    const int newHeight = std::max<int>(height, 1);
    return Move(picture, newWidth, newHeight, [=](const DibLock& from, const DibLock& to) {
        MovePixels(from, to, [=](int x, int y) {
            return std::pair(Nearest(x, oldWidth, newWidth), Nearest(y, oldHeight, newHeight));
        });
    });
}

HRESULT TurnQuarters(PackedDib& picture, int quarters) {
    const int right = picture.Layout().width - 1;
    const int bottom = picture.Layout().height - 1;
    if (quarters == 0)
        return S_OK;
    if (quarters == 2)
        return Move(picture, right + 1, bottom + 1, [=](const DibLock& from, const DibLock& to) {
            MovePixels(from, to, [=](int x, int y) { return std::pair(right - x, bottom - y); });
        });
    return Move(picture, bottom + 1, right + 1, [=](const DibLock& from, const DibLock& to) {
        MovePixels(from, to,
                   [=](int x, int y) { return quarters == 1 ? std::pair(right - y, x) : std::pair(y, bottom - x); });
    });
}

} // namespace kel::toolkit::effects
