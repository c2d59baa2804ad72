// Draws seeded cases with Win32 calls alone and prints a line and a checksum for each, so that two systems can be
// compared. usage: drawing_cases [COUNT [FIRST]] [--dump]

#include <kelcore/platform.h>

#include "tests/compare/Canvas.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

using kel::compare::Canvas;
using kel::compare::Random;

constexpr int kDefaultCount = 6000;
constexpr DWORD kNamed[] = {SRCCOPY,    SRCPAINT, SRCAND,   SRCINVERT, SRCERASE,  NOTSRCCOPY, NOTSRCERASE, MERGECOPY,
                            MERGEPAINT, PATCOPY,  PATPAINT, PATINVERT, DSTINVERT, BLACKNESS,  WHITENESS};

/// A rectangle as calls take it; a negative size mirrors.
struct Box {
    int x, y, width, height;
};

std::string Text(const Box& box) {
    char text[64];
    std::snprintf(text, sizeof text, "(%d,%d %dx%d)", box.x, box.y, box.width, box.height);
    return text;
}

std::string Hex(DWORD value) {
    char text[16];
    std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(value));
    return text;
}

Box InsideBox(Random& random, const Canvas& canvas) {
    const int x = random.Between(0, canvas.Width() - 1);
    const int y = random.Between(0, canvas.Height() - 1);
    return {x, y, random.Between(1, canvas.Width() - x), random.Between(1, canvas.Height() - y)};
}

/// Mostly inside a surface, sometimes partly or wholly outside it.
Box RandomBox(Random& random, const Canvas& canvas) {
    if (random.Below(3) != 0)
        return InsideBox(random, canvas);
    return {random.Between(-12, canvas.Width()), random.Between(-12, canvas.Height()),
            random.Between(0, canvas.Width() + 12), random.Between(0, canvas.Height() + 12)};
}

/// Whether a rectangle as calls take it lies inside.
bool IsInside(const Box& box, const Canvas& canvas) {
    const int x = box.width < 0 ? box.x + box.width + 1 : box.x;
    const int y = box.height < 0 ? box.y + box.height + 1 : box.y;
    return x >= 0 && y >= 0 && x + std::abs(box.width) <= canvas.Width() && y + std::abs(box.height) <= canvas.Height();
}

bool Overlap(const Box& a, const Box& b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

void MirrorSometimes(Random& random, Box& box) {
    if (random.Below(6) == 0) {
        box.x += box.width - 1;
        box.width = -box.width;
    }
    if (random.Below(6) == 0) {
        box.y += box.height - 1;
        box.height = -box.height;
    }
}

/// Whether the ternary operation looks at both the pattern and the source.
bool Mixes(DWORD operation) {
    const DWORD code = operation >> 16;
    return ((code >> 4 ^ code) & 0x0F) != 0 && ((code >> 2 ^ code) & 0x33) != 0;
}

DWORD RandomOperation(Random& random) {
    if (random.Below(3) == 0)
        return SRCCOPY;
    if (random.Below(2) == 0)
        return kNamed[random.Below(std::size(kNamed))];
    return random.Below(256) << 16;
}

BLENDFUNCTION RandomBlend(Random& random, const Canvas& source) {
    const BYTE opacity = random.Below(3) == 0 ? BYTE{255} : static_cast<BYTE>(random.Below(256));
    const bool perPixel = source.Depth() == 32 && !source.IsDeviceDependent() && random.Below(3) != 0;
    return {AC_SRC_OVER, 0, opacity, perPixel ? BYTE{AC_SRC_ALPHA} : BYTE{0}};
}

/// What the calls of a case draw with.
struct Case {
    Random& random;
    Canvas target;
    Canvas source;
    std::string line;
    bool coloursAlone = false; ///< bits of the target that are no colour are left to the system
    bool hasHoles = false;     ///< the clip region may be more than one rectangle

    std::string Setting(const char* name, long value) const { return std::string(" ") + name + std::to_string(value); }

    void ChooseColours() {
        SetTextColor(target.Dc(), random.Colour());
        SetBkColor(target.Dc(), random.Below(3) == 0 ? source.AnyColour(random) : random.Colour());
        SetTextColor(source.Dc(), random.Colour());
        SetBkColor(source.Dc(), random.Below(2) == 0 ? source.AnyColour(random) : random.Colour());
    }

    void ChooseStretchMode() {
        constexpr int kModes[] = {COLORONCOLOR, COLORONCOLOR, COLORONCOLOR, BLACKONWHITE, WHITEONBLACK, HALFTONE};
        const int mode = kModes[random.Below(std::size(kModes))];
        SetStretchBltMode(target.Dc(), mode);
        line += Setting("mode", mode);
    }

    /// Names what the case has when it is so: differences are explained by these names.
    void Note(const char* property, bool isSo) {
        if (isSo)
            line += std::string(" [") + property + "]";
    }

    void NoteStretch(const Box& to, const Box& from, const Canvas& drawn) {
        const bool mirrored = to.width < 0 || to.height < 0 || from.width < 0 || from.height < 0;
        const bool sameSize = to.width == from.width && to.height == from.height;
        Note("halftone", GetStretchBltMode(target.Dc()) == HALFTONE && !sameSize);
        const bool outside = !IsInside(from, drawn);
        Note("mirrored-outside", mirrored && outside);
        Note("single-outside", !mirrored && outside && (to.width == 1 || to.height == 1));
    }

    // The kinds of clip regions without pixels are told apart by the tests of contexts.
    Box ClipBox() {
        Box box = RandomBox(random, target);
        box.width = std::max(box.width, 1);
        box.height = std::max(box.height, 1);
        return box;
    }

    void ChooseClip() {
        if (random.Below(2) == 0) {
            const Box box = ClipBox();
            const int kind = IntersectClipRect(target.Dc(), box.x, box.y, box.x + box.width, box.y + box.height);
            line += " clip" + Text(box) + "=" + std::to_string(kind);
        }
        for (auto holes = random.Below(3) == 0 ? 1 + random.Below(4) : 0; holes > 0; --holes) {
            hasHoles = true;
            const Box box = ClipBox();
            const int kind = ExcludeClipRect(target.Dc(), box.x, box.y, box.x + box.width, box.y + box.height);
            line += " hole" + Text(box) + "=" + std::to_string(kind);
        }
    }

    UINT ChooseUsage() {
        const UINT usage = random.Below(4) == 0 ? source.UsePaletteIndices(random) : DIB_RGB_COLORS;
        Note("far-indices", usage == DIB_PAL_COLORS && source.HasFarIndices());
        return usage;
    }

    /// An operation with a source.
    DWORD Operation() {
        const DWORD operation = RandomOperation(random);
        Note("mixed-pattern", target.BrushRepeats() && Mixes(operation));
        return operation;
    }

    void Report(long result) { line += Setting("result", result); }
};

/// Copies of a surface on itself may overlap.
void Copy(Case& c, const Canvas& source) {
    const Box to = RandomBox(c.random, c.target);
    const Box from = RandomBox(c.random, source);
    const DWORD operation = c.Operation();
    c.line += Text(to) + Text(from) + " rop" + Hex(operation);
    const bool overlap = &source == &c.target && Overlap(to, {from.x, from.y, to.width, to.height});
    c.Note("overlap", overlap && (operation != SRCCOPY || c.hasHoles));
    c.Report(BitBlt(c.target.Dc(), to.x, to.y, to.width, to.height, source.Dc(), from.x, from.y, operation));
}

void DrawBitBlt(Case& c) {
    Copy(c, c.source);
}

void DrawBitBltOnItself(Case& c) {
    Copy(c, c.target);
}

void Stretch(Case& c, const Box& to, const Box& from, const Canvas& source) {
    const DWORD operation = c.Operation();
    c.ChooseStretchMode();
    c.line += Text(to) + Text(from) + " rop" + Hex(operation);
    c.NoteStretch(to, from, source);
    c.Report(StretchBlt(c.target.Dc(), to.x, to.y, to.width, to.height, source.Dc(), from.x, from.y, from.width,
                        from.height, operation));
}

void DrawStretchOnItself(Case& c) {
    const Box to = RandomBox(c.random, c.target);
    Stretch(c, to, InsideBox(c.random, c.target), c.target);
}

void DrawStretchBlt(Case& c) {
    Box to = RandomBox(c.random, c.target);
    Box from = c.random.Below(3) == 0 ? RandomBox(c.random, c.source) : InsideBox(c.random, c.source);
    MirrorSometimes(c.random, to);
    MirrorSometimes(c.random, from);
    Stretch(c, to, from, c.source);
}

void DrawPatBlt(Case& c) {
    const Box to = RandomBox(c.random, c.target);
    const DWORD operation = c.random.Below(2) == 0 ? RandomOperation(c.random) : PATCOPY;
    c.line += Text(to) + " rop" + Hex(operation);
    c.Report(PatBlt(c.target.Dc(), to.x, to.y, to.width, to.height, operation));
}

void DrawStretchDIBits(Case& c) {
    Box to = RandomBox(c.random, c.target);
    Box from = c.random.Below(3) == 0 ? RandomBox(c.random, c.source) : InsideBox(c.random, c.source);
    MirrorSometimes(c.random, to);
    if (c.random.Below(3) == 0) {
        to.width = from.width;
        to.height = from.height;
    }
    const DWORD operation = c.Operation();
    c.ChooseStretchMode();
    const UINT usage = c.ChooseUsage();
    c.line += Text(to) + Text(from) + " rop" + Hex(operation);
    c.NoteStretch(to, from, c.source);
    c.Note("part-of-top-down",
           c.source.IsTopDown() && operation == SRCCOPY && (from.y != 0 || from.height != c.source.Height()));
    c.Report(StretchDIBits(c.target.Dc(), to.x, to.y, to.width, to.height, from.x, from.y, from.width, from.height,
                           c.source.Bits(), c.source.Info(), usage, operation));
}

void DrawSetDIBitsToDevice(Case& c) {
    const Box to = RandomBox(c.random, c.target);
    const Box from = InsideBox(c.random, c.source);
    const UINT usage = c.ChooseUsage();
    c.line += Text(to) + Text(from);
    c.Report(SetDIBitsToDevice(c.target.Dc(), to.x, to.y, static_cast<DWORD>(from.width),
                               static_cast<DWORD>(from.height), from.x, from.y, 0, static_cast<UINT>(c.source.Height()),
                               c.source.Bits(), c.source.Info(), usage));
}

void DrawTransparent(Case& c) {
    Box from = c.random.Below(4) == 0 ? RandomBox(c.random, c.source) : InsideBox(c.random, c.source);
    Box to = RandomBox(c.random, c.target);
    if (c.random.Below(3) != 0) {
        to.width = from.width;
        to.height = from.height;
    }
    if (c.random.Below(4) == 0)
        MirrorSometimes(c.random, to);
    const COLORREF key = c.random.Below(4) == 0 ? c.random.Colour() : c.source.AnyColour(c.random);
    SetStretchBltMode(c.target.Dc(), c.random.Between(BLACKONWHITE, COLORONCOLOR));
    c.coloursAlone = true;
    c.line += Text(to) + Text(from) + " key" + Hex(key);
    c.Note("mirrored", to.width < 0 || to.height < 0);
    c.Note("outside", !IsInside(from, c.source));
    c.Note("shrunk", std::abs(to.width) < from.width || std::abs(to.height) < from.height);
    c.Note("odd-table", c.target.HasOddTable());
    c.Note("fourth-byte", c.source.Depth() == 32 && c.target.Depth() == 32);
    c.Report(TransparentBlt(c.target.Dc(), to.x, to.y, to.width, to.height, c.source.Dc(), from.x, from.y, from.width,
                            from.height, key));
}

void Blend(Case& c, const Box& to, const Box& from, const Canvas& source) {
    const BLENDFUNCTION blend = RandomBlend(c.random, source);
    c.coloursAlone = blend.AlphaFormat != AC_SRC_ALPHA;
    c.ChooseStretchMode();
    c.line += Text(to) + Text(from) + (blend.AlphaFormat ? " pixel" : " ") + std::to_string(blend.SourceConstantAlpha);
    c.Report(AlphaBlend(c.target.Dc(), to.x, to.y, to.width, to.height, source.Dc(), from.x, from.y, from.width,
                        from.height, blend));
}

void DrawAlpha(Case& c) {
    const Box to = RandomBox(c.random, c.target);
    Box from = c.random.Below(4) == 0 ? RandomBox(c.random, c.source) : InsideBox(c.random, c.source);
    if (c.random.Below(3) == 0) {
        from.width = to.width;
        from.height = to.height;
    }
    c.source.Premultiply();
    Blend(c, to, from, c.source);
}

/// Refused where the rectangles overlap.
void DrawAlphaOnItself(Case& c) {
    const Box to = InsideBox(c.random, c.target);
    c.target.Premultiply();
    Blend(c, to, InsideBox(c.random, c.target), c.target);
}

void DrawFills(Case& c) {
    const Box box = RandomBox(c.random, c.target);
    const RECT rect = {box.x, box.y, box.x + box.width, box.y + box.height};
    const auto kind = c.random.Below(c.target.Depth() == 1 ? 2 : 3); // on monochrome bitmaps Wine dithers
    c.line += Text(box) + c.Setting("kind", static_cast<long>(kind));
    if (kind == 0) {
        c.Report(ExtTextOutA(c.target.Dc(), 0, 0, ETO_OPAQUE, &rect, "", 0, nullptr));
    } else if (kind == 1) {
        c.Report(InvertRect(c.target.Dc(), &rect));
    } else {
        const HBRUSH brush = CreateSolidBrush(c.random.Colour());
        c.Report(FillRect(c.target.Dc(), &rect, brush) != 0);
        DeleteObject(brush);
    }
}

// What the calls answer for pixels that are not visible is documented, and Wine does otherwise: of these only the
// checksum tells.
void DrawPixels(Case& c) {
    RECT box;
    GetClipBox(c.target.Dc(), &box);
    for (int i = 0; i < 20; ++i) {
        const int x = c.random.Between(-2, c.target.Width() + 1);
        const int y = c.random.Between(-2, c.target.Height() + 1);
        const COLORREF set = SetPixel(c.target.Dc(), x, y, c.random.Colour());
        if (!c.hasHoles && PtInRect(&box, POINT{x, y}))
            c.line += " " + Hex(set) + "/" + Hex(GetPixel(c.target.Dc(), x, y));
    }
}

/// Rows of the target as another DIB format, and back again.
void DrawTransfer(Case& c) {
    const UINT start = c.random.Below(4);
    const UINT lines = 1 + c.random.Below(static_cast<std::uint32_t>(c.source.Height()));
    c.target.Release();
    c.line += c.Setting("start", start) + c.Setting("lines", lines);
    if (c.random.Below(2) == 0) {
        c.Note("beyond", start > static_cast<UINT>(c.source.Height()));
        c.Report(SetDIBits(c.target.Dc(), c.target.Bitmap(), start, lines, c.source.Bits(), c.source.Info(),
                           DIB_RGB_COLORS));
    } else {
        const int depth = c.random.Depth();
        c.line += c.Setting("as", depth) + " got" + Hex(c.target.ChecksumAs(depth, start, lines));
    }
    c.target.Select();
}

constexpr struct {
    const char* name;
    void (*draw)(Case&);
    int weight;
} kKinds[] = {{"BitBlt", DrawBitBlt, 5},
              {"BitBltOnItself", DrawBitBltOnItself, 2},
              {"StretchBlt", DrawStretchBlt, 7},
              {"StretchBltOnItself", DrawStretchOnItself, 1},
              {"PatBlt", DrawPatBlt, 3},
              {"StretchDIBits", DrawStretchDIBits, 6},
              {"SetDIBitsToDevice", DrawSetDIBitsToDevice, 1},
              {"TransparentBlt", DrawTransparent, 4},
              {"AlphaBlend", DrawAlpha, 5},
              {"AlphaBlendOnItself", DrawAlphaOnItself, 1},
              {"Fill", DrawFills, 2},
              {"Pixel", DrawPixels, 1},
              {"Transfer", DrawTransfer, 2}};

const auto& RandomKind(Random& random) {
    int total = 0;
    for (const auto& kind : kKinds)
        total += kind.weight;
    int left = random.Between(0, total - 1);
    const auto* kind = kKinds;
    while (left >= kind->weight)
        left -= kind++->weight;
    return *kind;
}

void RunCase(int number, bool dump) {
    Random random(static_cast<std::uint32_t>(number));
    const auto& kind = RandomKind(random);
    Case c{random, Canvas::Any(random), Canvas::Any(random), {}};
    c.line = std::to_string(number) + " " + kind.name + " " + c.source.Name() + ">" + c.target.Name() + " ";
    c.ChooseColours();
    c.line += c.target.ChooseBrush(random);
    c.ChooseClip();
    kind.draw(c);
    std::printf("%s crc%s\n", c.line.c_str(), Hex(c.target.Checksum(c.coloursAlone)).c_str());
    if (dump)
        c.target.Dump();
}

} // namespace

int main(int argc, char** argv) {
    return kel::compare::RunCases(argc, argv, kDefaultCount, RunCase);
}
