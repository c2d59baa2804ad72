#include "platform/kernel/Faults.h"
#include "platform/kernel/HostText.h"
#include "platform/modules/Guarded.h"
#include "platform/modules/StringResources.h"

#include <kelcore/platform/boxhook.h>

#include <cstdio>
#include <mutex>

using namespace kel::platform;

namespace {

constexpr std::size_t kMostButtons = 3;

/// The buttons of each style, from MB_OK to MB_CANCELTRYCONTINUE.
constexpr int kButtons[][kMostButtons] = {
    {IDOK},        {IDOK, IDCANCEL},    {IDABORT, IDRETRY, IDIGNORE},       {IDYES, IDNO, IDCANCEL},
    {IDYES, IDNO}, {IDRETRY, IDCANCEL}, {IDCANCEL, IDTRYAGAIN, IDCONTINUE},
};

struct HookPlace {
    std::mutex mutex;
    BoxHook hook;
};

HookPlace& Place() {
    static HookPlace& place = *new HookPlace; // outlives static objects that show boxes
    return place;
}

int AskHook(const BoxQuestion& question) {
    BoxHook hook;
    {
        const std::lock_guard guard(Place().mutex);
        hook = Place().hook;
    }
    return hook ? hook(question) : 0;
}

// A default button that the box does not have, or that would only show help, leaves the first one.
int DefaultButton(DWORD style) {
    const std::size_t index = (style & MB_DEFMASK) / MB_DEFBUTTON2;
    const auto& buttons = kButtons[style & MB_TYPEMASK];
    return index < kMostButtons && buttons[index] != 0 ? buttons[index] : buttons[0];
}

// One write, so that the blocks of several threads do not mix.
int AnswerOnStandardError(const BoxQuestion& question) {
    const std::string block = question.caption + "\n" + question.text + "\n";
    std::fwrite(block.data(), 1, block.size(), stderr);
    return DefaultButton(question.style);
}

std::string TextOf(HINSTANCE module, LPCSTR text, const char* none) {
    if (text == nullptr)
        return none;
    return IS_INTRESOURCE(text) ? StringResource(module, static_cast<WORD>(reinterpret_cast<ULONG_PTR>(text))) : text;
}

int Show(const MSGBOXPARAMSA& box) {
    const BoxQuestion question = {TextOf(box.hInstance, box.lpszText, ""),
                                  TextOf(box.hInstance, box.lpszCaption, "Error"), box.dwStyle, box.dwLanguageId};
    const int answer = AskHook(question);
    return answer != 0 ? answer : AnswerOnStandardError(question);
}

} // namespace

BoxHook kel::platform::SetBoxHook(BoxHook hook) {
    const std::lock_guard guard(Place().mutex);
    Place().hook.swap(hook);
    return hook;
}

int WINAPI MessageBoxIndirectA(const MSGBOXPARAMSA* box) {
    if (CallFails("MessageBoxIndirectA"))
        return 0;
    if (box == nullptr || box->cbSize != sizeof *box)
        return Fail(ERROR_INVALID_PARAMETER);
    if ((box->dwStyle & MB_TYPEMASK) >= std::size(kButtons))
        return Fail(ERROR_INVALID_MSGBOX_STYLE);
    return Guarded([&] { return Show(*box); });
}

int WINAPI MessageBoxA(HWND owner, LPCSTR text, LPCSTR caption, UINT style) {
    MSGBOXPARAMSA box = {};
    box.cbSize = sizeof box;
    box.hwndOwner = owner;
    box.lpszText = text;
    box.lpszCaption = caption;
    box.dwStyle = style;
    return MessageBoxIndirectA(&box);
}
