#include "platform/user/SystemColours.h"

#include "platform/gdi/Brushes.h"
#include "platform/kernel/Faults.h"
#include "platform/user/Updates.h"

#include <array>
#include <atomic>

namespace kel::platform {
namespace {

constexpr int kColours = COLOR_MENUBAR + 1;
constexpr COLORREF kFace = RGB(212, 208, 200);
constexpr COLORREF kCaption = RGB(10, 36, 106);
constexpr COLORREF kGrey = RGB(128, 128, 128);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kBlack = RGB(0, 0, 0);

using Colour = std::atomic<COLORREF>;

Colour g_colours[kColours] = {
    kFace,              // scroll bars
    RGB(58, 110, 165),  // the desktop
    kCaption,           // the active caption
    kGrey,              // inactive captions
    kFace,              // menus
    kWhite,             // windows
    kBlack,             // plain frames
    kBlack,             // text of menus
    kBlack,             // text of windows
    kWhite,             // text of the active caption
    kFace,              // the active border
    kFace,              // inactive borders
    kGrey,              // the workspace
    kCaption,           // what is selected
    kWhite,             // text of it
    kFace,              // faces
    kGrey,              // shadows
    kGrey,              // text of what is disabled
    kBlack,             // text of buttons
    kFace,              // text of inactive captions
    kWhite,             // highlights
    RGB(64, 64, 64),    // dark shadows
    kFace,              // lights
    kBlack,             // text of hints
    RGB(255, 255, 225), // hints
    RGB(181, 181, 181), // alternate faces
    RGB(0, 0, 200),     // links
    RGB(166, 202, 240), // the end of the active caption
    RGB(192, 192, 192), // the end of inactive captions
    kCaption,           // the selected item of a menu
    kFace,              // the bar of menus
};

bool IsColour(int index) {
    return index >= 0 && index < kColours;
}

using Brushes = std::array<HBRUSH, kColours>;

// As stock objects: not counted, never deleted.
Brushes MakeBrushes() {
    Brushes brushes{};
    for (std::size_t i = 0; i < brushes.size(); ++i)
        brushes[i] = static_cast<HBRUSH>(AddObject(std::make_shared<BrushObject>(g_colours[i]), /*stock*/ true));
    return brushes;
}

} // namespace

COLORREF SystemColour(int index) {
    return IsColour(index) ? g_colours[index].load() : kBlack;
}

HBRUSH SystemBrush(int index) {
    if (!IsColour(index))
        return nullptr;
    return WithMemory(HBRUSH(), [&] {
        static const Brushes brushes = MakeBrushes();
        return brushes[static_cast<std::size_t>(index)];
    });
}

} // namespace kel::platform

using namespace kel::platform;

DWORD WINAPI GetSysColor(int index) {
    return SystemColour(index);
}

HBRUSH WINAPI GetSysColorBrush(int index) {
    return CallFails("GetSysColorBrush") ? nullptr : SystemBrush(index);
}

BOOL WINAPI SetSysColors(int count, const INT* indexes, const COLORREF* colours) {
    if (CallFails("SetSysColors"))
        return FALSE;
    if (count < 1 || !indexes || !colours)
        return Fail(ERROR_INVALID_PARAMETER);
    for (int i = 0; i < count; ++i)
        if (IsColour(indexes[i]))
            g_colours[indexes[i]] = colours[i] & 0xFFFFFF;
    return WithMemory(false, [] {
        ShowNewColours();
        return true;
    });
}
