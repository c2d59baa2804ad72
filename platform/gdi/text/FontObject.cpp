#include "platform/gdi/text/FontObject.h"

#include "platform/kernel/Faults.h"

#include <algorithm>
#include <cstring>

namespace kel::platform {

FontObject::FontObject(const LOGFONTA& description) : GdiObject(kType), m_description(description) {
    m_description.lfFaceName[LF_FACESIZE - 1] = 0;
}

int FontObject::Describe(int size, void* buffer) const {
    constexpr int kSize = sizeof m_description;
    if (!buffer)
        return kSize;
    const int count = std::clamp(size, 0, kSize);
    std::memcpy(buffer, &m_description, static_cast<std::size_t>(count));
    return count;
}

std::string FontObject::Details() const {
    return std::string(m_description.lfFaceName) + " " + std::to_string(m_description.lfHeight);
}

std::shared_ptr<FontObject> MakeStockFont(int index) {
    struct Row {
        int index, height, weight;
        BYTE pitchAndFamily;
        const char* face;
    };
    // Where the system's own are of pixels, ours are as high and as bold.
    static constexpr Row kRows[] = {
        {OEM_FIXED_FONT, 12, FW_NORMAL, FIXED_PITCH | FF_MODERN, "Terminal"},
        {ANSI_FIXED_FONT, 12, FW_NORMAL, FIXED_PITCH | FF_MODERN, "Courier"},
        {ANSI_VAR_FONT, 12, FW_NORMAL, VARIABLE_PITCH | FF_SWISS, "MS Sans Serif"},
        {SYSTEM_FONT, 16, FW_BOLD, VARIABLE_PITCH | FF_SWISS, "System"},
        {DEVICE_DEFAULT_FONT, 16, FW_BOLD, VARIABLE_PITCH | FF_SWISS, "System"},
        {SYSTEM_FIXED_FONT, 15, FW_NORMAL, FIXED_PITCH | FF_MODERN, "Fixedsys"},
        {DEFAULT_GUI_FONT, -11, FW_NORMAL, VARIABLE_PITCH | FF_SWISS, "MS Shell Dlg"},
    };
    const Row& row =
        *std::find_if(std::begin(kRows), std::end(kRows) - 1, [&](const Row& r) { return r.index == index; });
    LOGFONTA description{};
    description.lfHeight = row.height;
    description.lfWeight = row.weight;
    description.lfPitchAndFamily = row.pitchAndFamily;
    std::strcpy(description.lfFaceName, row.face);
    return std::make_shared<FontObject>(description);
}

} // namespace kel::platform

using namespace kel::platform;

namespace {

HFONT Make(const LOGFONTA& description) {
    return WithMemory(HFONT(), [&] {
        return static_cast<HFONT>(static_cast<void*>(AddObject(std::make_shared<FontObject>(description))));
    });
}

} // namespace

HFONT WINAPI CreateFontIndirectA(const LOGFONTA* font) {
    return CallFails("CreateFontIndirectA") || !font ? nullptr : Make(*font);
}

HFONT WINAPI CreateFontA(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                         DWORD underline, DWORD strikeOut, DWORD charSet, DWORD outPrecision, DWORD clipPrecision,
                         DWORD quality, DWORD pitchAndFamily, LPCSTR face) {
    if (CallFails("CreateFontA"))
        return nullptr;
    const auto byte = [](DWORD value) { return static_cast<BYTE>(value); };
    LOGFONTA font{height,
                  width,
                  escapement,
                  orientation,
                  weight,
                  byte(italic),
                  byte(underline),
                  byte(strikeOut),
                  byte(charSet),
                  byte(outPrecision),
                  byte(clipPrecision),
                  byte(quality),
                  byte(pitchAndFamily),
                  {}};
    std::strncpy(font.lfFaceName, face ? face : "", LF_FACESIZE - 1);
    return Make(font);
}
