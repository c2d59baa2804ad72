#pragma once

#include "Children.h"
#include "Icons.h"

#include <memory>

/// A form with a caption, a table, paths, icons and children, which its own painting leaves out.
class Form : public WindowOf, public IComplexWindowObject {
public:
    static constexpr int kWidth = 440;
    static constexpr int kHeight = 380;

    Form();

    /// Whether all parts of it are there.
    bool IsReady() const;

    /// How often new colours were told of.
    int ColourChanges() const { return m_changes; }

    HWND GetWindowHandle() override { return Handle(); }
    void GetExcludedRects(IRectEnumerator** rects) override;

private:
    void OnPaint() override;
    void OnColours() override;

    void PaintGround(DC& dc);
    void PaintTitle(DC& dc);
    void PaintTable(DC& dc);
    void PaintPaths(DC& dc);
    void PaintIcons(DC& dc);

    Font m_plain;
    Font m_bold;
    Font m_large;
    SysPen m_line{PS_SOLID, 1, COLOR_BTNSHADOW};
    ImageList m_icons;
    std::unique_ptr<Chart> m_chart;
    std::unique_ptr<Button> m_send;
    std::unique_ptr<Button> m_drop;
    int m_changes = 0;
};
