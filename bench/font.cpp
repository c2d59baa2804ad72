#include "bench/gdi/Page.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"

#include <kelcore/gdi.h>
#include <kelcore/text.h>

namespace kel::bench {

std::string LongLine() {
    return Random(12).Letters(1000);
}

namespace {

// Kept until the program ends.
DC& FontContext() {
    auto* const dc = new DC(CreateCompatibleDC(nullptr), nullptr);
    SelectObject(dc->m_hDC,
                 (new Font(LOGFONTA{-kTextHeight, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, "Liberation Sans"}))->m_hFont);
    return *dc;
}

Call MeasureInk() {
    const DC& dc = FontContext();
    const WideString line = StdA2W(LongLine());
    return {[&dc, line] { benchmark::DoNotOptimize(dc.GetExactTextWidth(line)); },
            [&dc, line] { return std::to_string(dc.GetExactTextWidth(line)); }};
}

// A sum over a table of all widths.
Call SumTable() {
    const DC& dc = FontContext();
    const auto widths = std::make_shared<std::vector<ABC>>(256);
    for (unsigned short ch = 0; ch != 256; ++ch)
        dc.GetCharABCWidth(ch, (*widths)[ch]);
    return {[widths, line = StdA2W(LongLine())] {
        int width = 0;
        for (const unsigned short ch : line) {
            const ABC& abc = (*widths)[ch];
            width += abc.abcA + static_cast<int>(abc.abcB) + abc.abcC;
        }
        benchmark::DoNotOptimize(width);
    }};
}

const Enter<InkMeter> entered[] = {Enter<InkMeter>{{"kelcore", MeasureInk}},
                                   Enter<InkMeter>{{"limit-table", SumTable}}};

} // namespace

void AddFontJobs() {
    for (const InkMeter& meter : Contenders<InkMeter>())
        AddJob("font", meter.who, "ink of 1,000 characters", meter.make);
}

} // namespace kel::bench
