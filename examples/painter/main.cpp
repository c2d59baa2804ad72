// Paints a form into a window, changes the system's colours, lets it be painted again, and writes both states side by
// side as a PNG file. Off Windows the window is a surface in memory; on Windows it can be seen.
//
// usage: kelpainter FILE

#include "Form.h"
#include "PngFile.h"
#include "Report.h"
#include "Schemes.h"

#include <kelcore/bitmap.h>
#include <kelcore/text.h>

#include <cstdio>

namespace {

constexpr int kGap = 16;
constexpr unsigned long kPaper = 0x00FFFFFF;

// What the window shows, its frame included.
bool CopyWindow(HWND window, GDIBitmap& sheet, int x) {
    const WindowDC from(window);
    const HDC to = CreateCompatibleDC(nullptr);
    const HGDIOBJ old = SelectObject(to, sheet.GetHandle());
    const bool copied = BitBlt(to, x, 0, Form::kWidth, Form::kHeight, from.m_hDC, 0, 0, SRCCOPY) != FALSE;
    SelectObject(to, old);
    DeleteDC(to);
    return copied;
}

// A white sheet for two forms.
bool MakeSheet(GDIBitmap& sheet) {
    if (!sheet.CreateBitmap(Size(2 * Form::kWidth + kGap, Form::kHeight), 32))
        return false;
    DC dc(CreateCompatibleDC(nullptr), /*object*/ nullptr);
    const HGDIOBJ old = SelectObject(dc.m_hDC, sheet.GetHandle());
    dc.FillSolidRect(0, 0, 2 * Form::kWidth + kGap, Form::kHeight, kPaper);
    SelectObject(dc.m_hDC, old);
    return true;
}

bool PaintBoth(GDIBitmap& sheet) {
    const SystemColoursKept kept;
    UseScheme(Scheme::Classic);
    Form form;
    if (!form.IsReady())
        return false;
    ShowWindow(form.Handle(), SW_SHOWNORMAL);
    UpdateWindow(form.Handle());
    if (!CopyWindow(form.Handle(), sheet, 0))
        return false;
    UseScheme(Scheme::Dusk);
    UpdateWindow(form.Handle());
    return form.ColourChanges() == 1 && CopyWindow(form.Handle(), sheet, Form::kWidth + kGap);
}

int Run(const char* path) {
    GDIBitmap sheet;
    if (!MakeSheet(sheet) || !PaintBoth(sheet)) {
        std::fprintf(stderr, "kelpainter: the system refused to paint\n");
        return 1;
    }
    WritePng(sheet, StdA2W(path));
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "usage: kelpainter FILE\n");
        return 2;
    }
    try {
        return Run(arguments[1]);
    } catch (const kelexamples::Failure& failure) {
        std::fprintf(stderr, "kelpainter: %s\n", failure.line.c_str());
        return 1;
    }
}
