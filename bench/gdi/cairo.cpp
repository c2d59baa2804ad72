#include "bench/gdi/Page.h"

#include <cairo/cairo.h>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace {

using namespace kel::bench;

// An image surface with its context; kept until the program ends.
struct Surface {
    Surface(int width, int height)
        : image(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)), context(cairo_create(image)) {
        cairo_set_source_rgb(context, 1, 1, 1);
        cairo_paint(context);
        cairo_set_source_rgb(context, 0, 0, 0);
        cairo_select_font_face(context, kFace, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
        cairo_set_font_size(context, kTextHeight);
        cairo_font_options_t* const options = cairo_font_options_create();
        cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
        cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_ON);
        cairo_set_font_options(context, options);
        cairo_font_options_destroy(options);
    }
    cairo_surface_t* image;
    cairo_t* context;
};

std::string Ink(const Surface& surface) {
    cairo_surface_flush(surface.image);
    const auto* const pixels = reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(surface.image));
    const auto* const end = pixels + kPageWidth * kPageHeight;
    return std::any_of(pixels, end, [](std::uint32_t pixel) { return (pixel & 0xFFFFFF) == 0; }) ? "ink" : "none";
}

Call DrawPage() {
    auto* const surface = new Surface(kPageWidth, kPageHeight);
    const auto run = [surface, lines = PageLines()] {
        for (int i = 0; i != kLines; ++i) {
            cairo_move_to(surface->context, 0, i * kLineHeight + kTextHeight);
            cairo_show_text(surface->context, lines[static_cast<std::size_t>(i)].c_str());
        }
        cairo_surface_flush(surface->image);
    };
    return {run, [=] { return run(), Ink(*surface); }};
}

// The page with its glyphs already chosen and placed.
Call DrawGlyphs() {
    auto* const surface = new Surface(kPageWidth, kPageHeight);
    std::vector<std::vector<cairo_glyph_t>> lines;
    for (const std::string& line : PageLines()) {
        cairo_glyph_t* glyphs = nullptr;
        int count = 0;
        const double y = static_cast<double>(lines.size()) * kLineHeight + kTextHeight;
        cairo_scaled_font_text_to_glyphs(cairo_get_scaled_font(surface->context), 0, y, line.c_str(), -1, &glyphs,
                                         &count, nullptr, nullptr, nullptr);
        lines.emplace_back(glyphs, glyphs + count);
        cairo_glyph_free(glyphs);
    }
    const auto run = [=] {
        for (const auto& line : lines)
            cairo_show_glyphs(surface->context, line.data(), static_cast<int>(line.size()));
        cairo_surface_flush(surface->image);
    };
    return {run, [=] { return run(), Ink(*surface); }};
}

// Its widths are not rounded, so the result is its own.
Call MeasureInk() {
    auto* const surface = new Surface(1, 1);
    return {[surface, line = LongLine()] {
        cairo_text_extents_t extents;
        cairo_text_extents(surface->context, line.c_str(), &extents);
        benchmark::DoNotOptimize(extents);
    }};
}

const Enter<PageDrawer> entered[] = {Enter<PageDrawer>{{"cairo", DrawPage}},
                                     Enter<PageDrawer>{{"cairo-placed", DrawGlyphs}}};
const Enter<InkMeter> meter{{"cairo", MeasureInk}};

} // namespace
