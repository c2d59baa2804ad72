#include <kelcore/gdi/drawingobjects.h>
#include <kelcore/text.h>

#include "gdi/ObjectCache.h"

#include <cstdlib>
#include <cstring>
#include <utility>

namespace {

// @param font all zero where the name will be.
void SetFace(LOGFONTA& font, const WideString& name) {
    const NarrowString face = StdW2A(name);
    std::memcpy(font.lfFaceName, face.data(), std::min<std::size_t>(face.size(), LF_FACESIZE - 1));
}

// The height for a font of that many tenths of a point on @p dc. @return false when the system does not tell.
bool LogicalHeight(LONG tenths, HDC dc, LONG& height) {
    constexpr int kTenthsPerInch = 720;
    const int dotsPerInch = GetDeviceCaps(dc, LOGPIXELSY);
    POINT end = {0, static_cast<LONG>(static_cast<std::int64_t>(dotsPerInch) * tenths / kTenthsPerInch)};
    POINT origin = {0, 0};
    if (dotsPerInch == 0 || !DPtoLP(dc, &end, 1) || !DPtoLP(dc, &origin, 1))
        return false;
    height = -std::abs(end.y - origin.y);
    return true;
}

bool LogicalHeightOnScreen(LONG tenths, LONG& height) {
    const HDC screen = GetDC(nullptr);
    const bool known = screen != nullptr && LogicalHeight(tenths, screen, height);
    if (screen != nullptr)
        ReleaseDC(nullptr, screen);
    return known;
}

} // namespace

Font::Font() : m_hFont(nullptr) {}

Font::Font(const Font& other) : m_hFont(kel::Fonts().Share(other.m_hFont)) {}

Font::Font(HFONT font) : m_hFont(font) {}

Font::Font(const LOGFONTA& description) : m_hFont(nullptr) {
    Attach(kel::Fonts().Obtain(description));
}

Font::~Font() {
    Destroy();
}

Font& Font::operator=(const Font& other) {
    if (this != &other) {
        Destroy();
        m_hFont = kel::Fonts().Share(other.m_hFont);
    }
    return *this;
}

bool Font::Attach(HFONT font) {
    Destroy();
    m_hFont = font;
    return m_hFont != nullptr;
}

void Font::Destroy() {
    if (m_hFont != nullptr)
        kel::Fonts().Release(std::exchange(m_hFont, nullptr));
}

bool Font::CreateFontA(const WideString& faceName, int height, int width, int escapement, int orientation, int weight,
                       bool italic, bool underline, bool strikeOut, unsigned char charSet, unsigned char outPrecision,
                       unsigned char clipPrecision, unsigned char quality, unsigned char pitchAndFamily) {
    LOGFONTA font = {height,    width,   escapement,   orientation,   weight,  italic,         underline,
                     strikeOut, charSet, outPrecision, clipPrecision, quality, pitchAndFamily, /*face*/ {}};
    SetFace(font, faceName);
    return CreateFontIndirectA(font);
}

bool Font::CreateFontIndirectA(LOGFONTA& description) {
    return Attach(kel::Fonts().Obtain(description));
}

bool Font::CreatePointFont(int pointSizeTenths, const WideString& faceName, HDC dc) {
    LOGFONTA font = {};
    font.lfHeight = pointSizeTenths;
    font.lfCharSet = DEFAULT_CHARSET;
    SetFace(font, faceName);
    return CreatePointFontIndirect(font, dc);
}

bool Font::CreatePointFontIndirect(const LOGFONTA& description, HDC dc) {
    LOGFONTA font = description;
    const LONG tenths = description.lfHeight;
    const bool known =
        dc != nullptr ? LogicalHeight(tenths, dc, font.lfHeight) : LogicalHeightOnScreen(tenths, font.lfHeight);
    return known ? CreateFontIndirectA(font) : Attach(nullptr);
}
