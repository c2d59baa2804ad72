#include "platform/comctl/ImageListHandles.h"
#include "platform/kernel/Faults.h"
#include "platform/kernel/LastError.h"
#include "platform/modules/Guarded.h"

#include <kelcore/platform/windowsurfaces.h>

#include <mutex>
#include <optional>

namespace kel::platform {
namespace {

/// A context of all of a window, or of the screen.
class WholeContext {
public:
    explicit WholeContext(HWND window) : m_window(window), m_dc(GetWindowDC(window)) {}
    WholeContext(const WholeContext&) = delete;
    WholeContext& operator=(const WholeContext&) = delete;
    ~WholeContext() {
        if (m_dc)
            ReleaseDC(m_window, m_dc);
    }
    operator HDC() const { return m_dc; }

private:
    const HWND m_window;
    const HDC m_dc;
};

/// The image that is dragged.
class Drag {
public:
    Drag(std::shared_ptr<ImageList> image, POINT grip) : m_image(std::move(image)), m_grip(grip) {}

    bool Enter(HWND window, POINT at) {
        Show(false);
        m_window = window;
        m_at = at;
        m_entered = true;
        return Show(true);
    }

    bool Leave(HWND window) {
        if (!m_entered || m_window != window)
            return true;
        const bool hidden = Show(false);
        m_entered = false;
        return hidden;
    }

    bool MoveTo(POINT at) {
        const bool shown = m_shown;
        if (!Show(false))
            return false;
        m_at = at;
        return !shown || Show(true);
    }

    bool IsShown() const { return m_shown; }
    bool HasEntered() const { return m_entered; }

    bool Show(bool show) {
        if (m_shown == show)
            return true;
        const bool done = show ? Draw() : PutBack();
        // What cannot be put back is lost.
        m_shown = show && done;
        return done;
    }

private:
    POINT Corner() const { return {m_at.x - m_grip.x, m_at.y - m_grip.y}; }

    bool Draw() {
        const SIZE size = m_image->Size();
        m_under = MakeSection(size, 32);
        const BitmapContext under(m_under.get());
        const WholeContext window(m_window);
        if (!under.Ready() || !window ||
            !BitBlt(under.Dc(), 0, 0, size.cx, size.cy, window, Corner().x, Corner().y, SRCCOPY))
            return false;
        IMAGELISTDRAWPARAMS wanted = {};
        wanted.hdcDst = window;
        wanted.x = Corner().x;
        wanted.y = Corner().y;
        wanted.rgbFg = CLR_NONE;
        wanted.fStyle = ILD_TRANSPARENT | ILD_BLEND50;
        return platform::Draw(*m_image, wanted);
    }

    bool PutBack() {
        const SIZE size = m_image->Size();
        const BitmapContext under(m_under.get());
        const WholeContext window(m_window);
        return under.Ready() && window &&
               BitBlt(window, Corner().x, Corner().y, size.cx, size.cy, under.Dc(), 0, 0, SRCCOPY);
    }

    const std::shared_ptr<ImageList> m_image; // a list of this one
    const POINT m_grip;
    HWND m_window = nullptr;
    POINT m_at{0, 0};
    bool m_entered = false;
    bool m_shown = false;
    OwnedBitmap m_under; // what the window shows where the image is
};

struct DragPlace {
    std::mutex mutex;
    std::optional<Drag> drag;
};

DragPlace& Place() {
    static DragPlace& place = *new DragPlace; // as windows, it outlives static objects
    return place;
}

/// Does @p work on what is dragged. @return false if that is nothing.
template <class Work>
bool WithDrag(Work work) {
    const std::lock_guard guard(Place().mutex);
    return Place().drag && Guarded([&] { return work(*Place().drag); });
}

bool Begin(const ImageList& list, int index, POINT grip) {
    const std::lock_guard guard(Place().mutex);
    if (Place().drag)
        return Fail(ERROR_INVALID_STATE);
    auto image = std::make_shared<ImageList>(list.Size(), list.Flags(), list.Grow());
    if (!image->CopyFrom(list))
        return false;
    while (image->Count() > index + 1)
        if (!image->Remove(index + 1))
            return false;
    while (image->Count() > 1)
        if (!image->Remove(0))
            return false;
    Place().drag.emplace(std::move(image), grip);
    return true;
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI ImageList_BeginDrag(HIMAGELIST handle, int index, int dx, int dy) {
    if (CallFails("ImageList_BeginDrag"))
        return FALSE;
    const auto list = FindListWith(handle, index);
    return list && Guarded([&] { return Begin(*list, index, {dx, dy}); });
}

void WINAPI ImageList_EndDrag() {
    WithDrag([](Drag& drag) { return drag.Show(false); });
    const std::lock_guard guard(Place().mutex);
    Place().drag.reset();
}

BOOL WINAPI ImageList_DragEnter(HWND window, int x, int y) {
    if (CallFails("ImageList_DragEnter"))
        return FALSE;
    return WithDrag([&](Drag& drag) { return drag.Enter(window, {x, y}); });
}

BOOL WINAPI ImageList_DragLeave(HWND window) {
    if (CallFails("ImageList_DragLeave") || (window && !IsWindow(window)))
        return FALSE;
    bool left = true;
    WithDrag([&](Drag& drag) { return left = drag.Leave(window); });
    return left;
}

BOOL WINAPI ImageList_DragMove(int x, int y) {
    if (CallFails("ImageList_DragMove"))
        return FALSE;
    return WithDrag([&](Drag& drag) { return drag.MoveTo({x, y}); });
}

BOOL WINAPI ImageList_DragShowNolock(BOOL show) {
    if (CallFails("ImageList_DragShowNolock"))
        return FALSE;
    return WithDrag(
        [&](Drag& drag) { return drag.HasEntered() && drag.IsShown() != (show != FALSE) && drag.Show(show != FALSE); });
}
