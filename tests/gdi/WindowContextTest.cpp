#include "tests/gdi/Canvas.h"
#include "tests/gdi/Complex.h"
#include "tests/support/Faults.h"

namespace {

const RECT kExcluded[] = {{0, 0, 10, 100}};

// A visible window with a frame.
class Window {
public:
    Window() {
        WNDCLASSA description = {};
        description.lpfnWndProc = DefWindowProcA;
        description.lpszClassName = "KelCoreContextTest";
        RegisterClassA(&description);
        m_window = CreateWindowExA(0, description.lpszClassName, "", WS_POPUP | WS_DLGFRAME | WS_VISIBLE, 20, 20, 60,
                                   50, nullptr, nullptr, nullptr, nullptr);
        REQUIRE(m_window != nullptr);
        UpdateWindow(m_window);
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window() {
        DestroyWindow(m_window);
        UnregisterClassA("KelCoreContextTest", nullptr);
    }
    operator HWND() const { return m_window; }
    SIZE Client() const {
        RECT client = {};
        GetClientRect(m_window, &client);
        return {client.right, client.bottom};
    }

private:
    HWND m_window;
};

// What drawing through @p dc reaches.
RECT Reach(const DC& dc) {
    RECT box = {};
    GetClipBox(dc.m_hDC, &box);
    return box;
}

bool IsRect(const RECT& rect, int left, int top, int right, int bottom) {
    return rect.left == left && rect.top == top && rect.right == right && rect.bottom == bottom;
}

} // namespace

TEST_CASE("contexts of windows reach the client area or all, and are given back") {
    const Window window;
    const SIZE client = window.Client();
    HDC used[2] = {};
    {
        ClientDC dc(window);
        WindowDC frame(window);
        CHECK((IsRect(Reach(dc), 0, 0, client.cx, client.cy) && IsRect(Reach(frame), 0, 0, 60, 50)));
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
        CHECK((IsRect(Reach(dc), 5, 6, 25, 26) && IsRect(dc.m_paint.rcPaint, 5, 6, 25, 26)));
        CHECK((dc.m_paint.hdc == dc.m_hDC && dc.m_hWnd == window));
    }
    CHECK_FALSE(GetUpdateRect(window, nullptr, FALSE));
    InvalidateRect(window, &update, FALSE);
    Complex object(window, kExcluded, 1);
    {
        const PaintDC dc(&object);
        CHECK(IsRect(Reach(dc), 10, 6, 25, 26));
    }
    Complex again(window, kExcluded, 1);
    const ClientDC dc(&again);
    CHECK((IsRect(Reach(dc), 10, 0, window.Client().cx, window.Client().cy) && object.Out() + again.Out() == 0));
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
        const std::string call = kel::test::FaultedCall();
        CHECK(((client.m_hDC != nullptr && frame.m_hDC != nullptr && paint.m_hDC != nullptr) || !call.empty()));
        CHECK((paint.m_hDC != nullptr || paint.m_paint.hdc == nullptr));
    });
}
