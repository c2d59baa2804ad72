#include "tests/support/MessageBoxes.h"

#include <kelcore/platform.h>

#include <algorithm>
#include <utility>

namespace kel::test {

struct MessageBoxes::Watch {
    explicit Watch(int press) : answer(press) {}

    static LRESULT CALLBACK OnWindow(int code, WPARAM window, LPARAM more);
    static void CALLBACK OnShown(HWND box, UINT, UINT_PTR timer, DWORD);
    static BOOL CALLBACK OnControl(HWND control, LPARAM box);

    const int answer;
    std::vector<SeenBox> seen;
    HWND shown = nullptr; // the box that is answered now
    HHOOK hook = nullptr;
    Watch* before = nullptr;
};

namespace {

constexpr UINT_PTR kTimer = 1000;

thread_local MessageBoxes::Watch* t_watch = nullptr;

std::string TextOf(HWND window) {
    char text[2000] = {};
    GetWindowTextA(window, text, sizeof text);
    return text;
}

std::string ClassOf(HWND window) {
    char name[40] = {};
    GetClassNameA(window, name, sizeof name);
    return name;
}

} // namespace

// A box is complete when its message loop comes to rest, which its first timer tells. The screen may take the focus
// from a box and give it back, so that one box is activated more than once.
LRESULT CALLBACK MessageBoxes::Watch::OnWindow(int code, WPARAM window, LPARAM more) {
    const auto box = reinterpret_cast<HWND>(window);
    if (t_watch && code == HCBT_ACTIVATE && box != t_watch->shown && ClassOf(box) == "#32770") {
        t_watch->shown = box;
        SetTimer(box, kTimer, USER_TIMER_MINIMUM, OnShown);
    }
    if (t_watch && code == HCBT_DESTROYWND && box == t_watch->shown)
        t_watch->shown = nullptr;
    return CallNextHookEx(nullptr, code, window, more);
}

BOOL CALLBACK MessageBoxes::Watch::OnControl(HWND control, LPARAM box) {
    SeenBox& seen = *reinterpret_cast<SeenBox*>(box);
    const std::string kind = ClassOf(control);
    const LONG style = GetWindowLongA(control, GWL_STYLE);
    if (!(style & WS_VISIBLE))
        return TRUE;
    if (kind == "Button")
        seen.buttons.push_back(GetDlgCtrlID(control));
    else if (kind == "Static" && (style & SS_TYPEMASK) == SS_ICON)
        seen.hasIcon = SendMessageA(control, STM_GETICON, 0, 0) != 0;
    else if (kind == "Static")
        seen.text = TextOf(control);
    return TRUE;
}

void CALLBACK MessageBoxes::Watch::OnShown(HWND box, UINT, UINT_PTR timer, DWORD) {
    const HWND focus = GetFocus(); // a box gives the focus to its default button
    if (!IsChild(box, focus)) {
        SetActiveWindow(box); // which gives the focus back; the timer comes again
        return;
    }
    KillTimer(box, timer);
    if (!t_watch)
        return;
    const int first = GetDlgCtrlID(focus);
    SeenBox seen = {"", TextOf(box), {}, first, false};
    EnumChildWindows(box, OnControl, reinterpret_cast<LPARAM>(&seen));
    std::sort(seen.buttons.begin(), seen.buttons.end());
    t_watch->seen.push_back(seen);
    PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(t_watch->answer != 0 ? t_watch->answer : first), 0);
}

MessageBoxes::MessageBoxes(int answer) : m_watch(std::make_unique<Watch>(answer)) {
    m_watch->before = std::exchange(t_watch, m_watch.get());
    m_watch->hook = SetWindowsHookExA(WH_CBT, Watch::OnWindow, nullptr, GetCurrentThreadId());
}

MessageBoxes::~MessageBoxes() {
    UnhookWindowsHookEx(m_watch->hook);
    t_watch = m_watch->before;
}

const std::vector<SeenBox>& MessageBoxes::Seen() const {
    return m_watch->seen;
}

} // namespace kel::test
