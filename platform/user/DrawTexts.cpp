#include "platform/user/DrawTexts.h"

#include "platform/gdi/text/TextDrawing.h"
#include "platform/kernel/Faults.h"

#include <algorithm>

namespace kel::platform {
namespace {

constexpr int kDefaultTab = 8; // average characters

/// The format with DT_TABSTOP's number taken out of it, which stands where other flags do.
struct Format {
    UINT flags;
    int tabCharacters = kDefaultTab;

    explicit Format(UINT format) : flags(format) {
        if (format & DT_TABSTOP) {
            tabCharacters = static_cast<int>(format >> 8 & 0xFF);
            flags &= ~0xFF00u;
        }
    }
    bool Has(UINT flag) const { return (flags & flag) != 0; }
};

int LeftOf(const RECT& rect, int width, const Format& format) {
    if (format.Has(DT_CENTER))
        return (rect.left + rect.right - width) / 2;
    return format.Has(DT_RIGHT) ? rect.right - width : rect.left;
}

int TopOf(const RECT& rect, int height, const Format& format) {
    if (!format.Has(DT_SINGLELINE))
        return rect.top;
    if (format.Has(DT_VCENTER))
        return rect.top + (rect.bottom - rect.top) / 2 - height / 2;
    return format.Has(DT_BOTTOM) ? rect.bottom - height : rect.top;
}

/// A line at a place in logical units.
struct PlacedLine {
    const TextLine& line;
    const LineRules& rules;
    POINT at;
    TextPlacement placement; // all but the place

    int XOf(std::size_t index) const { return at.x + rules.font.LogicalX(rules.WidthOf(line.shown, index)); }
};

bool IsTab(const PlacedLine& placed, std::size_t i) {
    return placed.line.shown[i].code == '\t' && placed.rules.format & DT_EXPANDTABS;
}

/// Draws what stands between tabs piece by piece.
void DrawPieces(DeviceContext& context, const PlacedLine& placed) {
    const TextRun& shown = placed.line.shown;
    for (std::size_t first = 0; first < shown.size();) {
        std::size_t end = first;
        while (end < shown.size() && !IsTab(placed, end))
            ++end;
        if (end != first) {
            TextPlacement placement = placed.placement;
            placement.at = {placed.XOf(first), placed.at.y};
            DrawRun(context, shown.data() + first, end - first, placement);
        }
        first = end + 1;
    }
}

/// A line of one pixel below the marked character.
void DrawMark(DeviceContext& context, const PlacedLine& placed) {
    const FontMetrics& metrics = placed.rules.font.Font().Metrics();
    const POINT start = context.ToDevice(POINT{placed.XOf(placed.line.mark), placed.at.y});
    const POINT end = context.ToDevice(POINT{placed.XOf(placed.line.mark + 1), placed.at.y});
    const int top = start.y + metrics.ascent + 1;
    Region mark(RECT{start.x, top, end.x - 1, top + 1});
    if (placed.placement.options & ETO_CLIPPED)
        mark.Intersect(Region(context.ToDevice(*placed.placement.rect)));
    FillPixels(context, std::move(mark), context.State().textColour);
}

void DrawLine(DeviceContext& context, const PlacedLine& placed, const Format& format) {
    if (!format.Has(DT_PREFIXONLY))
        DrawPieces(context, placed);
    if (placed.line.IsMarked() && !format.Has(DT_HIDEPREFIX))
        DrawMark(context, placed);
}

/// Whether the line at @p y is the last one that is shown.
bool IsLowest(const RECT& rect, int y, int height, const Format& format) {
    if (format.Has(DT_NOCLIP | DT_CALCRECT | DT_SINGLELINE))
        return false;
    return y + (format.Has(DT_EDITCONTROL) ? 2 * height - 1 : height) > rect.bottom;
}

/// The rectangle and the result of a text without characters.
int DrawNothing(RECT& rect, int height, const Format& format) {
    if (format.Has(DT_CALCRECT)) {
        rect.right = rect.left;
        rect.bottom = rect.top + (format.Has(DT_SINGLELINE) ? height : 0);
    }
    return height;
}

} // namespace

int DrawInRect(DeviceContext& context, TextToDraw& text, RECT& rect) {
    const ContextFont font(context);
    if (!font)
        return 0;
    const Format format(text.format);
    const FontMetrics& metrics = font.Font().Metrics();
    const int height = font.LogicalY(metrics.Height() + (format.Has(DT_EXTERNALLEADING) ? metrics.externalLeading : 0));
    if (text.run.empty())
        return DrawNothing(rect, height, format);
    const LineRules rules{font, format.flags, font.PixelsX(rect.right - rect.left),
                          metrics.averageWidth * format.tabCharacters};
    LineBreaker lines(rules, text.run);
    int y = TopOf(rect, font.LogicalY(metrics.Height()), format);
    int widest = 0;
    for (bool lowest = false; !lines.AtEnd() && !lowest; y += height) {
        lowest = IsLowest(rect, y, height, format);
        TextLine line = lines.Next(lowest);
        const int width = font.LogicalX(line.width);
        widest = std::max(widest, width);
        if (!format.Has(DT_CALCRECT)) {
            const UINT options = format.Has(DT_NOCLIP) ? 0 : ETO_CLIPPED;
            DrawLine(context, {line, rules, {LeftOf(rect, width, format), y}, {{}, options, &rect, nullptr}}, format);
        }
        if (line.shortened)
            text.changed = std::move(line);
    }
    if (format.Has(DT_CALCRECT)) {
        rect.right = rect.left + widest;
        rect.bottom = y;
    }
    return y - rect.top;
}

namespace {

TextRun RunOf(LPCSTR text, std::size_t count) {
    return RunOfAnsi(text, count);
}
TextRun RunOf(LPCWSTR text, std::size_t count) {
    return RunOfWide(text, count);
}

/// By how many units, the NUL included, a text may become longer: the room that DT_MODIFYSTRING asks callers for.
constexpr std::size_t kMostAdded = 4;

/// The units of a line that was shortened, with the NUL.
template <class Unit>
std::vector<Unit> UnitsOf(const TextToDraw& text, const Unit* units) {
    std::vector<std::size_t> offsets{0};
    for (const TextCharacter& character : text.run)
        offsets.push_back(offsets.back() + character.units);
    std::vector<Unit> result;
    for (const std::size_t from : text.changed.from)
        if (from == TextLine::kDot)
            result.push_back('.');
        else
            result.insert(result.end(), units + offsets[from], units + offsets[from + 1]);
    result.push_back(0);
    return result;
}

template <class Unit>
std::size_t LengthOf(const Unit* units) {
    std::size_t length = 0;
    while (units[length] != 0)
        ++length;
    return length;
}

template <class Unit>
int DrawAny(const char* name, HDC dc, const Unit* units, int count, LPRECT rect, UINT format) {
    if (CallFails(name))
        return 0;
    const auto context = FindContext(dc);
    if (!context || !units || !rect || count == 0)
        return 0;
    return WithMemory(0, [&] {
        const std::size_t length = count < 0 ? LengthOf(units) : static_cast<std::size_t>(count);
        TextToDraw text{RunOf(units, length), format};
        const int result = DrawInRect(*context, text, *rect);
        if (format & DT_MODIFYSTRING && text.changed.shortened) {
            auto changed = UnitsOf(text, units);
            // Tabs can make a line wider by moving it, so that it gets dots twice and loses next to nothing for them.
            if (changed.size() > length + kMostAdded) {
                changed.resize(length + kMostAdded);
                changed.back() = 0;
            }
            // The caller said that the text may be changed.
            std::copy(changed.begin(), changed.end(), const_cast<Unit*>(units));
        }
        return result;
    });
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

int WINAPI DrawTextA(HDC dc, LPCSTR text, int count, LPRECT rect, UINT format) {
    return DrawAny("DrawTextA", dc, text, count, rect, format);
}

int WINAPI DrawTextW(HDC dc, LPCWSTR text, int count, LPRECT rect, UINT format) {
    return DrawAny("DrawTextW", dc, text, count, rect, format);
}
