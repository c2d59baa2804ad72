#include "platform/user/Placing.h"

#include "platform/kernel/Faults.h"
#include "platform/user/Updates.h"

#include <algorithm>

namespace kel::platform {
namespace {

bool IsSame(SIZE a, SIZE b) {
    return a.cx == b.cx && a.cy == b.cy;
}

POINT ClientCorner(const Window& window) {
    const RECT client = window.Client();
    return {window.Place().left + client.left, window.Place().top + client.top};
}

Region RegionOf(SIZE size) {
    return Region(RECT{0, 0, size.cx, size.cy});
}

void ExposePlace(Window& window, const Region& place) {
    if (window.Parent())
        Expose(*window.Parent(), place);
}

// What its class wants to be painted at another size: all of it, or what is new.
Region GrownPart(const Window& window, SIZE before) {
    const SIZE size = window.ClientSize();
    const UINT style = window.Class().style;
    Region part = RegionOf(size);
    const bool all = (style & CS_HREDRAW && size.cx != before.cx) || (style & CS_VREDRAW && size.cy != before.cy);
    if (!all)
        part.Subtract(RegionOf(before));
    return part;
}

/// A change of a window's place, from what SetWindowPos is handed.
struct Change {
    RECT from;
    RECT to;
    SIZE clientFrom;
    POINT cornerFrom;
    bool restacked;
    bool framed; ///< the frame is to be drawn
    bool IsMove() const { return from.left != to.left || from.top != to.top; }
    bool IsSize() const {
        return from.right - from.left != to.right - to.left || from.bottom - from.top != to.bottom - to.top;
    }
};

// A child does not take along what it shows: it is painted anew where it comes to.
void RepaintMoved(Window& window, const Change& change) {
    ExposePlace(window, Region(change.from));
    InvalidateAll(window);
}

void RepaintSized(Window& window, const Change& change) {
    Region left(change.from);
    left.Subtract(Region(change.to));
    ExposePlace(window, left);
    Invalidate(window, GrownPart(window, change.clientFrom), /*erase*/ true, Spread::Unclipped);
    window.frameInvalid = true;
}

void Repaint(Window& window, const Change& change) {
    if (window.Parent() && (change.IsMove() || change.restacked))
        RepaintMoved(window, change);
    else if (change.IsSize() || change.framed)
        RepaintSized(window, change);
    FlushFrame(window);
}

void Tell(Window& window, const Change& change) {
    const POINT corner = ClientCorner(window);
    if (corner.x != change.cornerFrom.x || corner.y != change.cornerFrom.y)
        TellPlace(window);
    if (!IsSame(window.ClientSize(), change.clientFrom))
        TellSize(window);
}

// @return false if @p after is no sibling.
bool Restack(Window& window, HWND after) {
    const auto top = HWND_TOP;
    if (!window.Parent() || window.handle == after)
        return true;
    const auto& siblings = window.Parent()->Children();
    if (after == HWND_BOTTOM) {
        if (siblings.back().get() != &window)
            window.Restack(siblings.back().get());
        return true;
    }
    const auto is = [after](const std::shared_ptr<Window>& sibling) { return sibling->handle == after; };
    const auto sibling = std::find_if(siblings.begin(), siblings.end(), is);
    if (after != top && sibling == siblings.end())
        return Fail(ERROR_INVALID_WINDOW_HANDLE);
    window.Restack(after == top ? nullptr : sibling->get());
    return true;
}

RECT WantedPlace(const Window& window, int x, int y, int width, int height, UINT flags) {
    const RECT place = window.Place();
    const SIZE old = window.Size();
    return PlaceFor(flags & SWP_NOMOVE ? POINT{place.left, place.top} : POINT{x, y},
                    flags & SWP_NOSIZE ? old : SIZE{width, height});
}

bool Put(Window& window, HWND after, const RECT& place, UINT flags) {
    Change change{window.Place(), place, window.ClientSize(), ClientCorner(window), false, false};
    if (!(flags & SWP_NOZORDER)) {
        if (!Restack(window, after))
            return false;
        change.restacked = true;
    }
    change.framed = (flags & SWP_FRAMECHANGED) != 0;
    window.SetPlace(place);
    if (!(flags & SWP_NOREDRAW))
        Repaint(window, change);
    Tell(window, change);
    if (flags & (SWP_SHOWWINDOW | SWP_HIDEWINDOW))
        Show(window, (flags & SWP_SHOWWINDOW) != 0);
    return true;
}

} // namespace

RECT PlaceFor(POINT corner, SIZE size) {
    constexpr LONG kMost = 1 << 20;
    const LONG left = std::clamp<LONG>(corner.x, -kMost, kMost);
    const LONG top = std::clamp<LONG>(corner.y, -kMost, kMost);
    return {left, top, left + std::clamp<LONG>(size.cx, 0, kMost), top + std::clamp<LONG>(size.cy, 0, kMost)};
}

void TellSize(Window& window) {
    const SIZE size = window.ClientSize();
    Send(window, WM_SIZE, SIZE_RESTORED, MAKELPARAM(size.cx, size.cy));
}

void TellPlace(Window& window) {
    const POINT corner = ClientCorner(window);
    Send(window, WM_MOVE, 0, MAKELPARAM(corner.x, corner.y));
}

bool Show(Window& window, bool shown) {
    const bool before = window.IsShown();
    if (shown == before)
        return before;
    Send(window, WM_SHOWWINDOW, shown);
    window.SetShown(shown);
    window.update = Region();
    window.erase = window.frameInvalid = false;
    if (shown)
        InvalidateAll(window);
    else
        ExposePlace(window, Region(window.Place()));
    FlushFrame(window);
    return before;
}

} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI ShowWindow(HWND handle, int how) {
    if (CallFails("ShowWindow"))
        return FALSE;
    const auto window = FindWindowOf(handle);
    return window && WithMemory(false, [&] { return Show(*window, how != SW_HIDE); });
}

BOOL WINAPI IsWindowVisible(HWND handle) {
    if (CallFails("IsWindowVisible"))
        return FALSE;
    const auto window = FindWindowOf(handle);
    return window && window->IsVisible();
}

BOOL WINAPI SetWindowPos(HWND handle, HWND after, int x, int y, int width, int height, UINT flags) {
    if (CallFails("SetWindowPos"))
        return FALSE;
    const auto window = FindWindowOf(handle);
    return window && WithMemory(false, [&] {
               return Put(*window, after, WantedPlace(*window, x, y, width, height, flags), flags);
           });
}

BOOL WINAPI MoveWindow(HWND handle, int x, int y, int width, int height, BOOL repaint) {
    if (CallFails("MoveWindow"))
        return FALSE;
    const auto window = FindWindowOf(handle);
    const UINT flags = SWP_NOZORDER | SWP_NOACTIVATE | (repaint ? 0 : SWP_NOREDRAW);
    return window && WithMemory(false, [&] {
               if (!Put(*window, nullptr, WantedPlace(*window, x, y, width, height, flags), flags))
                   return false;
               if (repaint)
                   PaintNow(*window);
               return true;
           });
}
