// Draws pictures in every way that the library has, onto one sheet, and writes it as a PNG file.
//
// usage: kelmodes FILE

#include "Motifs.h"
#include "PngFile.h"
#include "Report.h"
#include "Sheet.h"

#include <kelcore/text.h>

#include <cstdio>

namespace {

using Scale = XSize<double>;

const Scale kAsItIs(1.0, 1.0);

// The five modes side by side, a row for each scale.
bool ShowModes(Sheet& sheet, const GDIBitmap& picture) {
    const Scale scales[] = {kAsItIs, Scale(0.5, 0.5), Scale(2.0, 2.0), Scale(1.25, 0.5)};
    sheet.BeginGroup(4, 0x00B06020);
    bool done = true;
    for (const Scale& scale : scales) {
        for (int mode = IBitmap::BM_Stretch; mode <= IBitmap::BM_Tile; ++mode)
            done &= picture.Draw(sheet.Context(), sheet.NextCell(false), static_cast<IBitmap::BM_Mode>(mode), scale);
    }
    return done;
}

// Transparent and blended, over a checkerboard.
bool ShowBlending(Sheet& sheet, const GDIBitmap& landscape, const GDIBitmap& ring) {
    const HDC dc = sheet.Context();
    sheet.BeginGroup(2, 0x0040A040);
    bool done = ring.TransparentDraw(dc, sheet.NextCell(true), kKey, IBitmap::BM_Center, kAsItIs);
    done &= ring.TransparentDraw(dc, sheet.NextCell(true), kKey, IBitmap::BM_Fit, kAsItIs);
    done &= ring.TransparentDraw(dc, sheet.NextCell(true), kKey, IBitmap::BM_Tile, Scale(0.5, 0.5));
    GDIBitmap cut(ring);
    done &= cut.SetAlphaTransparence(kKey, 0.0);
    done &= cut.AlphaDraw(dc, sheet.NextCell(true), 1.0, true, IBitmap::BM_Center, kAsItIs);
    done &= cut.AlphaDraw(dc, sheet.NextCell(true), 0.4, true, IBitmap::BM_Fill, kAsItIs);
    for (const double opacity : {0.25, 0.5, 0.75})
        done &= landscape.AlphaDraw(dc, sheet.NextCell(true), opacity, false, IBitmap::BM_Stretch, kAsItIs);
    GDIBitmap overlay(ring);
    done &= overlay.SetAlphaChannel(Rect(0, 0, 84, 84), kKey, 0x00803000, 0.6);
    const Rect cell = sheet.NextCell(true);
    done &= landscape.Draw(dc, cell, IBitmap::BM_Center, kAsItIs);
    done &= overlay.AlphaDraw(dc, cell, 1.0, true, IBitmap::BM_Center, kAsItIs);
    const Rect last = sheet.NextCell(true);
    done &= landscape.Draw(dc, last, IBitmap::BM_Center, kAsItIs);
    return done && ring.TransparentDraw(dc, last, kKey, IBitmap::BM_Center, kAsItIs);
}

bool ShowCentred(Sheet& sheet, const GDIBitmap& picture) {
    return picture.Draw(sheet.Context(), sheet.NextCell(false), IBitmap::BM_Center, kAsItIs);
}

// The mask of the ring, as large as the landscape.
GDIBitmap RingMask(const GDIBitmap& ring, const Size& size) {
    GDIBitmap placed;
    placed.CreateBitmap(ring, size, 32, IBitmap::BM_Center, kAsItIs, kKey);
    GDIBitmap mask = placed.CreateMaskBmp(kKey);
    mask.Invert();
    return mask;
}

// What changes a picture's own pixels: tints with and without a mask, masks, grey, the negative, parts.
bool ShowChanges(Sheet& sheet, const GDIBitmap& landscape, const GDIBitmap& ring) {
    const Size size = landscape.GetDimension();
    const Rect whole(0, 0, size.cx, size.cy);
    const GDIBitmap mask = RingMask(ring, size);
    GDIBitmap tinted(landscape), masked(landscape), combined(ring), grey(landscape), disabled(ring);
    GDIBitmap inverted(mask), negative(landscape), cropped(landscape), resized(landscape);
    bool done = tinted.AlphaShadeBitmap(whole, 0x000060FF, 140, nullptr);
    done &= masked.AlphaShadeBitmap(whole, 0x000060FF, 200, &mask);
    done &= combined.CombineBitmap(landscape, kKey);
    done &= grey.SetStyleDisabled(0xFFFFFF);
    done &= disabled.SetStyleDisabled(kKey);
    done &= inverted.Invert() && negative.Invert();
    done &= cropped.Crop(Rect(14, 6, 90, 60)) && resized.Resize(Size(32, 21)) && resized.Resize(Size(128, 84));
    sheet.BeginGroup(2, 0x004040C0);
    for (const GDIBitmap* const shown : {&tinted, &masked, &combined, &grey})
        done &= ShowCentred(sheet, *shown);
    done &= disabled.TransparentDraw(sheet.Context(), sheet.NextCell(false), kKey, IBitmap::BM_Center, kAsItIs);
    for (const GDIBitmap* const shown :
         {&mask, static_cast<const GDIBitmap*>(&inverted), static_cast<const GDIBitmap*>(&negative),
          static_cast<const GDIBitmap*>(&cropped), static_cast<const GDIBitmap*>(&resized)})
        done &= ShowCentred(sheet, *shown);
    return done;
}

int Run(const char* path) {
    Sheet sheet(/*rows*/ 8, /*groups*/ 3);
    const GDIBitmap landscape = Landscape();
    const GDIBitmap ring = Ring();
    const bool drawn =
        ShowModes(sheet, landscape) && ShowBlending(sheet, landscape, ring) && ShowChanges(sheet, landscape, ring);
    if (!drawn || sheet.Picture().IsEmpty()) {
        std::fprintf(stderr, "kelmodes: the system refused to draw\n");
        return 1;
    }
    WritePng(sheet.Picture(), StdA2W(path));
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "usage: kelmodes FILE\n");
        return 2;
    }
    try {
        return Run(arguments[1]);
    } catch (const kelexamples::Failure& failure) {
        std::fprintf(stderr, "kelmodes: %s\n", failure.line.c_str());
        return 1;
    }
}
