#include "platform/gdi/text/ContextFont.h"
#include "platform/kernel/Faults.h"
#include "platform/kernel/HostPath.h"
#include "platform/kernel/HostText.h"

#include <algorithm>
#include <cstring>

namespace kel::platform {
namespace {

// The characters that TEXTMETRIC names for a font of western letters.
constexpr BYTE kFirstCharacter = 30;
constexpr BYTE kLastCharacter = 255;
constexpr BYTE kDefaultCharacter = 31;
constexpr BYTE kBreakCharacter = 32;
constexpr int kDotsAnInch = 96;

/// Runs @p work with the font of a context. @return its result; false without a context or a font.
template <class Work>
BOOL WithFont(const char* name, HDC dc, Work work) {
    if (CallFails(name))
        return FALSE;
    DeviceContext* context = PeekContext(dc);
    return context && WithMemory(false, [&] {
               const ContextFont font(*context);
               return font && work(font);
           });
}

TEXTMETRICA MetricsOf(const ContextFont& font) {
    const FontMetrics& pixels = font.Font().Metrics();
    const LOGFONTA& wanted = font.Description();
    TEXTMETRICA metrics{};
    metrics.tmAscent = font.LogicalY(pixels.ascent);
    metrics.tmDescent = font.LogicalY(pixels.descent);
    metrics.tmHeight = metrics.tmAscent + metrics.tmDescent;
    metrics.tmInternalLeading = metrics.tmHeight - font.LogicalY(pixels.em);
    metrics.tmExternalLeading = font.LogicalY(pixels.externalLeading);
    metrics.tmAveCharWidth = font.LogicalX(pixels.averageWidth);
    metrics.tmMaxCharWidth = font.LogicalX(pixels.maximumWidth);
    metrics.tmWeight = pixels.weight;
    metrics.tmDigitizedAspectX = metrics.tmDigitizedAspectY = kDotsAnInch;
    metrics.tmFirstChar = kFirstCharacter;
    metrics.tmLastChar = kLastCharacter;
    metrics.tmDefaultChar = kDefaultCharacter;
    metrics.tmBreakChar = kBreakCharacter;
    metrics.tmItalic = wanted.lfItalic != 0;
    metrics.tmUnderlined = wanted.lfUnderline;
    metrics.tmStruckOut = wanted.lfStrikeOut;
    metrics.tmPitchAndFamily = pixels.pitchAndFamily;
    metrics.tmCharSet = wanted.lfCharSet == DEFAULT_CHARSET ? ANSI_CHARSET : wanted.lfCharSet;
    return metrics;
}

/// Stores something of each character of a range, by @p decode from the caller's number.
template <class Item, class Decode, class Store>
BOOL EachWidth(const char* name, HDC dc, UINT first, UINT last, Item* items, Decode decode, Store store) {
    return WithFont(name, dc, [&](const ContextFont& font) {
        if (!items || last < first)
            return Fail(ERROR_INVALID_PARAMETER);
        for (UINT number = first;; ++number, ++items) {
            store(font, font.Font().WidthsOf(decode(number)), *items);
            if (number == last)
                return true;
        }
    });
}

struct StoreParts {
    void operator()(const ContextFont& font, GlyphWidths widths, ABC& abc) const {
        abc.abcA = font.LogicalX(widths.before);
        abc.abcB = static_cast<UINT>(font.LogicalX(widths.box));
        abc.abcC = font.LogicalX(widths.behind);
    }
};

struct StoreAdvance {
    void operator()(const ContextFont& font, GlyphWidths widths, INT& width) const {
        width = font.LogicalX(widths.Advance());
    }
};

struct UnitOf {
    char32_t operator()(UINT number) const { return static_cast<WCHAR>(number); }
};

/// @return 0, or the error.
DWORD FontFileOf(LPCSTR file, LPVOID reserved, std::string& host) {
    return !file || reserved ? ERROR_INVALID_PARAMETER : ResolveHostPath(file, host);
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

int WINAPI AddFontResourceExA(LPCSTR file, DWORD /*options*/, LPVOID reserved) {
    if (CallFails("AddFontResourceExA"))
        return 0;
    return WithMemory(0, [&] {
        std::string host;
        const DWORD error = FontFileOf(file, reserved, host);
        const int faces = error == 0 ? AddFontFile(host) : 0;
        if (faces == 0)
            Fail(error == 0 ? ERROR_FILE_NOT_FOUND : error);
        return faces;
    });
}

BOOL WINAPI RemoveFontResourceExA(LPCSTR file, DWORD /*options*/, LPVOID reserved) {
    const bool fails = CallFails("RemoveFontResourceExA");
    return WithMemory(false, [&] {
        std::string host;
        const DWORD error = FontFileOf(file, reserved, host);
        const bool removed = error == 0 && RemoveFontFile(host);
        if (!removed && !fails)
            Fail(error == 0 ? ERROR_FILE_NOT_FOUND : error);
        return removed && !fails;
    });
}

BOOL WINAPI GetTextMetricsA(HDC dc, LPTEXTMETRICA metrics) {
    return WithFont("GetTextMetricsA", dc, [&](const ContextFont& font) {
        if (!metrics)
            return Fail(ERROR_INVALID_PARAMETER);
        *metrics = MetricsOf(font);
        return true;
    });
}

int WINAPI GetTextFaceA(HDC dc, int count, LPSTR name) {
    int stored = 0;
    WithFont("GetTextFaceA", dc, [&](const ContextFont& font) {
        const std::string face = AnsiFromUtf8(font.Font().Choice().name);
        stored = static_cast<int>(face.size()) + 1;
        if (!name)
            return true;
        stored = 0;
        if (count <= 0)
            return Fail(ERROR_INVALID_PARAMETER);
        const std::string_view fits = CutAtCharacter(face, static_cast<std::size_t>(count) - 1);
        std::memcpy(name, fits.data(), fits.size());
        name[fits.size()] = 0;
        stored = static_cast<int>(fits.size());
        return true;
    });
    return stored;
}

BOOL WINAPI GetCharABCWidthsA(HDC dc, UINT first, UINT last, LPABC widths) {
    return EachWidth("GetCharABCWidthsA", dc, first, last, widths, CharacterOfAnsiNumber, StoreParts());
}

BOOL WINAPI GetCharABCWidthsW(HDC dc, UINT first, UINT last, LPABC widths) {
    return EachWidth("GetCharABCWidthsW", dc, first, last, widths, UnitOf(), StoreParts());
}

BOOL WINAPI GetCharWidthA(HDC dc, UINT first, UINT last, LPINT widths) {
    return EachWidth("GetCharWidthA", dc, first, last, widths, CharacterOfAnsiNumber, StoreAdvance());
}

BOOL WINAPI GetCharWidthW(HDC dc, UINT first, UINT last, LPINT widths) {
    return EachWidth("GetCharWidthW", dc, first, last, widths, UnitOf(), StoreAdvance());
}

BOOL WINAPI GetCharWidth32A(HDC dc, UINT first, UINT last, LPINT widths) {
    return EachWidth("GetCharWidth32A", dc, first, last, widths, CharacterOfAnsiNumber, StoreAdvance());
}

BOOL WINAPI GetCharWidth32W(HDC dc, UINT first, UINT last, LPINT widths) {
    return EachWidth("GetCharWidth32W", dc, first, last, widths, UnitOf(), StoreAdvance());
}
