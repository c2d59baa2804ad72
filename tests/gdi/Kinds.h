#pragma once

#include <kelcore/gdi.h>

/// The kinds of shared drawing objects alike: wrappers by number, and the number that a handle's object was made by.
struct Brushes {
    using Wrapper = Brush;
    static HBRUSH HandleOf(const Brush& brush) { return brush.m_hBrush; }
    static bool Create(Brush& brush, int number) { return brush.Create(static_cast<unsigned long>(number)); }
    static HBRUSH Foreign(int number) { return CreateSolidBrush(static_cast<COLORREF>(number)); }
    static int NumberOf(HBRUSH brush) {
        LOGBRUSH description = {};
        GetObjectA(brush, sizeof description, &description);
        return static_cast<int>(description.lbColor);
    }
};

struct Pens {
    using Wrapper = Pen;
    static HPEN HandleOf(const Pen& pen) { return pen.m_hPen; }
    static bool Create(Pen& pen, int number) { return pen.Create(PS_DASH, number, 0xFF); }
    static HPEN Foreign(int number) { return CreatePen(PS_DASH, number, 0xFF); }
    static int NumberOf(HPEN pen) {
        LOGPEN description = {};
        GetObjectA(pen, sizeof description, &description);
        return description.lopnWidth.x;
    }
};

struct Fonts {
    using Wrapper = Font;
    static LOGFONTA Describe(int number) {
        return {number, 0, 0, 0, FW_BOLD, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, "Arial"};
    }
    static HFONT HandleOf(const Font& font) { return font.m_hFont; }
    static bool Create(Font& font, int number) {
        LOGFONTA description = Describe(number);
        return font.CreateFontIndirectA(description);
    }
    static HFONT Foreign(int number) {
        const LOGFONTA description = Describe(number);
        return ::CreateFontIndirectA(&description);
    }
    static int NumberOf(HFONT font) {
        LOGFONTA description = {};
        GetObjectA(font, sizeof description, &description);
        return description.lfHeight;
    }
};
