#pragma once

#include "tests/gdi/Canvas.h"

/// The kinds of shared drawing objects alike: wrappers by number, and the number that a handle's object was made by.
struct Brushes {
    using Wrapper = Brush;
    static HBRUSH HandleOf(const Brush& brush) { return brush.m_hBrush; }
    static bool Create(Brush& brush, int number) { return brush.Create(static_cast<unsigned long>(number)); }
    static LOGBRUSH Describe(COLORREF number) { return {BS_SOLID, number, 0}; }
    static bool Counts(std::size_t /*byte*/) { return true; }
    static constexpr int kNullObject = NULL_BRUSH;
    static LOGBRUSH Null(COLORREF number) { return {BS_NULL, number, number}; }
    static HBRUSH Foreign(int number) { return CreateSolidBrush(static_cast<COLORREF>(number)); }
    static int NumberOf(HBRUSH brush) { return static_cast<int>(Told<LOGBRUSH>(brush).lbColor); }
};

struct Pens {
    using Wrapper = Pen;
    static HPEN HandleOf(const Pen& pen) { return pen.m_hPen; }
    static bool Create(Pen& pen, int number) { return pen.Create(PS_DASH, number, 0xFF); }
    static LOGPEN Describe(int number) { return {PS_DASH, {number, 0}, 0xFF}; }
    /// The width's other coordinate does not.
    static bool Counts(std::size_t byte) { return byte / 4 != offsetof(LOGPEN, lopnWidth) / 4 + 1; }
    static constexpr int kNullObject = NULL_PEN;
    static LOGPEN Null(COLORREF number) { return {PS_NULL, {static_cast<LONG>(number), 0}, number}; }
    static HPEN Foreign(int number) { return CreatePen(PS_DASH, number, 0xFF); }
    static int NumberOf(HPEN pen) { return Told<LOGPEN>(pen).lopnWidth.x; }
};

struct Fonts {
    using Wrapper = Font;
    static LOGFONTA Describe(int number) { return Arial(number, FW_BOLD); }
    /// The face name does up to its end.
    static bool Counts(std::size_t byte) { return byte <= offsetof(LOGFONTA, lfFaceName) + 5; }
    static HFONT HandleOf(const Font& font) { return font.m_hFont; }
    static bool Create(Font& font, int number) {
        LOGFONTA description = Describe(number);
        return font.CreateFontIndirectA(description);
    }
    static HFONT Foreign(int number) {
        const LOGFONTA description = Describe(number);
        return ::CreateFontIndirectA(&description);
    }
    static int NumberOf(HFONT font) { return Told<LOGFONTA>(font).lfHeight; }
};
