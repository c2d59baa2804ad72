#include "platform/gdi/text/TextDrawing.h"
#include "platform/kernel/Faults.h"

#include <algorithm>
#include <cstdlib>

namespace kel::platform {
namespace {

constexpr int kDefaultTab = 8; // average characters

/// Tab stops, counted in pixels from their origin. A negative one aligns what follows to end at it.
class TabStops {
public:
    TabStops(const ContextFont& font, int count, const INT* stops)
        : m_default(kDefaultTab * font.Font().Metrics().averageWidth) {
        if (stops && count > 0)
            for (const INT stop : std::vector<INT>(stops, stops + count))
                m_stops.push_back(font.PixelsX(stop));
    }

    /// Where a piece of @p width begins that follows a tab at @p x.
    int Next(int x, int width) const {
        if (m_stops.size() == 1)
            return NextMultiple(x, width, m_stops.front());
        for (const int stop : m_stops) {
            const int start = stop < 0 ? -stop - width : stop;
            if (start > x)
                return start;
        }
        return NextMultiple(x, width, m_default);
    }

private:
    static int NextMultiple(int x, int width, int stop) {
        const int distance = std::abs(stop);
        const int before = stop < 0 ? width : 0;
        if (distance == 0)
            return x;
        return ((x + before) / distance + 1) * distance - before;
    }

    int m_default;
    std::vector<int> m_stops; // one: of a distance
};

/// A text without tabs and where it begins, in pixels from the text's beginning.
struct Piece {
    std::size_t first;
    std::size_t count;
    int start;
    int end;
};

/// @param origin of the stops, in pixels from the text's beginning.
std::vector<Piece> PiecesOf(const ContextFont& font, const TextRun& run, const TabStops& stops, int origin) {
    std::vector<Piece> pieces;
    int x = 0;
    for (std::size_t first = 0; first <= run.size();) {
        std::size_t end = first;
        while (end < run.size() && run[end].code != '\t')
            ++end;
        const int width = font.WidthOf(run.data() + first, run.data() + end);
        if (first != 0)
            x = origin + stops.Next(x - origin, width);
        pieces.push_back({first, end - first, x, x + width});
        x += width;
        first = end + 1;
    }
    return pieces;
}

/// The width in the low and the height in the high 16 bits.
DWORD Packed(const ContextFont& font, const std::vector<Piece>& pieces) {
    const auto low = [](int value) { return static_cast<DWORD>(value) & 0xFFFF; };
    return low(font.LogicalX(pieces.back().end)) | low(font.LogicalY(font.Font().Metrics().Height())) << 16;
}

/// With the space before it, in OPAQUE mode.
void DrawPiece(DeviceContext& context, const ContextFont& font, const TextRun& run, const Piece& piece, POINT at,
               int before) {
    const RECT cell{at.x + font.LogicalX(before), at.y, at.x + font.LogicalX(piece.end),
                    at.y + font.LogicalY(font.Font().Metrics().Height())};
    const bool opaque = context.State().backMode == OPAQUE;
    DrawRun(context, run.data() + piece.first, piece.count,
            {{at.x + font.LogicalX(piece.start), at.y}, opaque ? UINT{ETO_OPAQUE} : 0, &cell, nullptr});
}

/// Runs @p work with the font and the text; 0 without either.
template <class Work>
DWORD WithText(const char* name, HDC dc, LPCSTR text, int count, Work work) {
    if (CallFails(name))
        return 0;
    const auto context = FindContext(dc);
    if (!context || !text || count <= 0)
        return 0;
    return WithMemory(DWORD{0}, [&] {
        const ContextFont font(*context);
        return font ? work(*context, font, RunOfAnsi(text, static_cast<std::size_t>(count))) : 0;
    });
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

LONG WINAPI TabbedTextOutA(HDC dc, int x, int y, LPCSTR text, int count, int stopCount, const INT* stops, int origin) {
    const auto draw = [&](DeviceContext& context, const ContextFont& font, const TextRun& run) {
        const auto pieces = PiecesOf(font, run, TabStops(font, stopCount, stops), font.PixelsX(origin - x));
        int before = 0;
        for (const Piece& piece : pieces) {
            DrawPiece(context, font, run, piece, {x, y}, before);
            before = piece.end;
        }
        return Packed(font, pieces);
    };
    return static_cast<LONG>(WithText("TabbedTextOutA", dc, text, count, draw));
}

DWORD WINAPI GetTabbedTextExtentA(HDC dc, LPCSTR text, int count, int stopCount, const INT* stops) {
    return WithText("GetTabbedTextExtentA", dc, text, count,
                    [&](DeviceContext&, const ContextFont& font, const TextRun& run) {
                        return Packed(font, PiecesOf(font, run, TabStops(font, stopCount, stops), /*origin*/ 0));
                    });
}
