#include "tests/gdi/Canvas.h"
#include "tests/gdi/Complex.h"
#include "tests/platform/TestWindow.h"

namespace {

const RECT kExcluded[] = {{0, 0, 10, 100}};

// A visible window with a frame.
struct Window : TestWindow {
    Window() : TestWindow('w', WS_POPUP | WS_DLGFRAME | WS_VISIBLE, {20, 20, 80, 70}) {
        REQUIRE(handle != nullptr);
        UpdateWindow(handle);
    }
    SIZE Client() const {
        RECT client = {};
        GetClientRect(handle, &client);
        return {client.right, client.bottom};
    }
};

// What drawing through @p dc reaches.
std::string Reach(const DC& dc) {
    RECT box = {};
    GetClipBox(dc.m_hDC, &box);
    return Text(box);
}

} // namespace

TEST_CASE("contexts of windows reach the client area or all, and are given back") {
    const Window window;
    const SIZE client = window.Client();
    HDC used[2] = {};
    {
        ClientDC dc(window);
        WindowDC frame(window);
        CHECK((Reach(dc) == "0 0 " + Text(client) && Reach(frame) == "0 0 60 50"));
        CHECK((client.cx < 60 && dc.m_hWnd == window && frame.m_hWnd == window));
        dc.FillSolidRect(3, 4, 1, 1, 0x12345);
        CHECK(GetPixel(frame.m_hDC, 3 + (60 - client.cx) / 2, 4 + (50 - client.cy) / 2) == 0x12345);
        used[0] = dc.m_hDC;
        used[1] = frame.m_hDC;
    }
    CHECK((ReleaseDC(window, used[0]) == 0 && ReleaseDC(window, used[1]) == 0));
}

TEST_CASE("a paint cycle is clipped to what is to be painted, and ends") {
    const Window window;
    const RECT update = {5, 6, 25, 26};
    InvalidateRect(window, &update, FALSE);
    {
        const PaintDC dc(window);
        CHECK((Reach(dc) == "5 6 25 26" && Text(dc.m_paint.rcPaint) == "5 6 25 26"));
        CHECK((dc.m_paint.hdc == dc.m_hDC && dc.m_hWnd == window));
    }
    CHECK_FALSE(GetUpdateRect(window, nullptr, FALSE));
    InvalidateRect(window, &update, FALSE);
    Complex object(window, kExcluded, 1);
    {
        const PaintDC dc(&object);
        CHECK(Reach(dc) == "10 6 25 26");
    }
    Complex again(window, kExcluded, 1);
    const ClientDC dc(&again);
    CHECK((Reach(dc) == "10 0 " + Text(window.Client()) && object.Out() + again.Out() == 0));
}

TEST_CASE("without a window, or when the system refuses, there is no context") {
    const auto foreign = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(0x7654));
    CHECK((ClientDC(foreign).m_hDC == nullptr && WindowDC(foreign).m_hDC == nullptr));
    CHECK(PaintDC(foreign).m_hDC == nullptr);
    const Window window;
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [&] {
        InvalidateRect(window, nullptr, FALSE);
        const ClientDC client(window);
        const WindowDC frame(window);
        const PaintDC paint(window);
        CHECK(((client.m_hDC != nullptr && frame.m_hDC != nullptr && paint.m_hDC != nullptr) ||
               kel::test::HasCallFailed()));
        CHECK((paint.m_hDC != nullptr || paint.m_paint.hdc == nullptr));
    });
}
