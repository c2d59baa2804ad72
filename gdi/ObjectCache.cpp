#include "gdi/ObjectCache.h"

#include "runtime/Lasting.h"

#include <cstring>
#include <tuple>

namespace kel {
namespace {

struct Caches {
    ObjectCache<FontKind> fonts;
    ObjectCache<PenKind> pens;
    ObjectCache<BrushKind> brushes;
};

Lasting<Caches> g_caches;

struct Emptying {
    ~Emptying() {
        Brushes().Clear();
        Pens().Clear();
        Fonts().Clear();
    }
};

const Emptying g_emptying;

int CompareFaces(const char* left, const char* right) noexcept {
    // Mostly one face in many sizes, which is seen without a look at the code page.
    if (std::strcmp(left, right) == 0)
        return 0;
    return _mbscmp(reinterpret_cast<const unsigned char*>(left), reinterpret_cast<const unsigned char*>(right));
}

auto SizesOf(const LOGFONTA& font) noexcept {
    return std::tie(font.lfHeight, font.lfWidth, font.lfEscapement, font.lfOrientation, font.lfWeight);
}

auto BytesOf(const LOGFONTA& font) noexcept {
    return std::tie(font.lfItalic, font.lfUnderline, font.lfStrikeOut, font.lfCharSet, font.lfOutPrecision,
                    font.lfClipPrecision, font.lfQuality, font.lfPitchAndFamily);
}

} // namespace

LOGBRUSH BrushKind::Canonical(const LOGBRUSH& brush) noexcept {
    return brush.lbStyle == BS_NULL ? LOGBRUSH{BS_NULL, /*colour*/ 0, /*hatch*/ 0} : brush;
}

bool BrushKind::Less(const LOGBRUSH& left, const LOGBRUSH& right) noexcept {
    return std::tie(left.lbColor, left.lbStyle, left.lbHatch) < std::tie(right.lbColor, right.lbStyle, right.lbHatch);
}

HBRUSH BrushKind::New(const LOGBRUSH& brush) {
    return CreateBrushIndirect(&brush);
}

LOGPEN PenKind::Canonical(const LOGPEN& pen) noexcept {
    return pen.lopnStyle == PS_NULL ? LOGPEN{PS_NULL, /*width*/ {0, 0}, /*colour*/ 0} : pen;
}

bool PenKind::Less(const LOGPEN& left, const LOGPEN& right) noexcept {
    return std::tie(left.lopnColor, left.lopnWidth.x, left.lopnStyle) <
           std::tie(right.lopnColor, right.lopnWidth.x, right.lopnStyle);
}

HPEN PenKind::New(const LOGPEN& pen) {
    return CreatePenIndirect(&pen);
}

LOGFONTA FontKind::Canonical(const LOGFONTA& font) noexcept {
    LOGFONTA canonical = font;
    canonical.lfFaceName[LF_FACESIZE - 1] = 0;
    return canonical;
}

bool FontKind::Less(const LOGFONTA& left, const LOGFONTA& right) noexcept {
    if (const int order = CompareFaces(left.lfFaceName, right.lfFaceName); order != 0)
        return order < 0;
    const auto leftSizes = SizesOf(left), rightSizes = SizesOf(right);
    return leftSizes != rightSizes ? leftSizes < rightSizes : BytesOf(left) < BytesOf(right);
}

HFONT FontKind::New(const LOGFONTA& font) {
    return CreateFontIndirectA(&font);
}

ObjectCache<BrushKind>& Brushes() noexcept {
    return (*g_caches).brushes;
}

ObjectCache<PenKind>& Pens() noexcept {
    return (*g_caches).pens;
}

ObjectCache<FontKind>& Fonts() noexcept {
    return (*g_caches).fonts;
}

} // namespace kel
