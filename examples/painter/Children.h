#pragma once

#include "WindowOf.h"

#include <kelcore/gdi.h>
#include <kelcore/text.h>

/// A button as it looks when nobody presses it.
class Button : public WindowOf {
public:
    Button(HWND parent, const RECT& place, const WideString& text, bool enabled);

private:
    void OnPaint() override;

    const WideString m_text;
    const bool m_enabled;
    Font m_font;
    SysBrush m_face{COLOR_BTNFACE};
};

/// A chart in a sunken frame: a tide curve, drawn with a pen and a region of the system's colours.
class Chart : public WindowOf {
public:
    Chart(HWND parent, const RECT& place);

private:
    void OnPaint() override;

    SysBrush m_ground{COLOR_WINDOW};
    SysBrush m_water{COLOR_HIGHLIGHT};
    SysPen m_line{PS_SOLID, 1, COLOR_WINDOWTEXT};
};
