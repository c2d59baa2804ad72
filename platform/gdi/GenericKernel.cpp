#include "platform/gdi/Colours.h"
#include "platform/gdi/PixelAccess.h"
#include "platform/gdi/RowKernel.h"

#include <algorithm>

namespace kel::platform {
namespace {

int Wrapped(int value, int size) {
    const int rest = value % size;
    return rest < 0 ? rest + size : rest;
}

// The value of a channel's product with an opacity, rounded.
std::uint32_t Scaled(std::uint32_t channel, std::uint32_t opacity) {
    return (channel * opacity + 127) / 255;
}

std::uint32_t Channel(std::uint32_t pixel, int shift) {
    return pixel >> shift & 0xFF;
}

// --- the source pixel that a target pixel meets

/// The and, or the or, of all pixels that fall on a target pixel, each as it is stored there.
std::uint32_t Gathered(const RasterJob& job, const SourceRange& columns, const SourceRange& rows) {
    const bool isAnd = job.stretchMode == BLACKONWHITE;
    std::uint32_t result = isAnd ? 0xFFFFFFFF : 0;
    for (int y = std::min(rows.first, rows.last); y <= std::max(rows.first, rows.last); ++y)
        for (int x = std::min(columns.first, columns.last); x <= std::max(columns.first, columns.last); ++x) {
            const std::uint32_t pixel = job.colours(ReadPixel(job.source, x, y));
            result = isAnd ? result & pixel : result | pixel;
        }
    return result;
}

/// The average of the colours of all pixels that fall on a target pixel, rounded.
std::uint32_t Averaged(const RasterJob& job, const SourceRange& columns, const SourceRange& rows) {
    std::uint64_t sums[3] = {};
    std::uint64_t count = 0;
    for (int y = std::min(rows.first, rows.last); y <= std::max(rows.first, rows.last); ++y)
        for (int x = std::min(columns.first, columns.last); x <= std::max(columns.first, columns.last); ++x, ++count) {
            const COLORREF colour = ColourOfPixel(job.source, ReadPixel(job.source, x, y));
            for (int i = 0; i < 3; ++i)
                sums[i] += Channel(colour, 8 * i);
        }
    const auto mean = [&](std::uint64_t sum) { return (sum + count / 2) / count; };
    return PixelOfColour(job.target, RGB(mean(sums[0]), mean(sums[1]), mean(sums[2])));
}

bool IsSingle(const SourceRange& range) {
    return range.first == range.last;
}

bool GathersPixels(const RasterJob& job) {
    return job.operation == RasterJob::Operation::Raster && job.stretchMode != COLORONCOLOR;
}

/// As the target stores it.
std::uint32_t GatheredPixel(const RasterJob& job, const SourceRange& columns, const SourceRange& rows) {
    if (IsSingle(columns) && IsSingle(rows))
        return job.colours(ReadPixel(job.source, columns.last, rows.first));
    if (job.stretchMode == HALFTONE)
        return Averaged(job, columns, rows);
    return Gathered(job, columns, rows);
}

// --- operations

/// A pixel as a 32-bit one.
std::uint32_t Deep(const Surface& surface, std::uint32_t pixel) {
    return surface.format == PixelFormat::Bgrx32 ? pixel : Swapped(ColourOfPixel(surface, pixel));
}

std::uint32_t Shallow(const Surface& surface, std::uint32_t pixel) {
    if (surface.format == PixelFormat::Bgrx32)
        return pixel;
    const bool byCell = surface.format == PixelFormat::Indexed4 || surface.format == PixelFormat::Indexed8;
    return PixelOfColour(surface, byCell ? CellOf(Swapped(pixel)) : Swapped(pixel));
}

// Bits that are no part of the colour do not count.
bool IsKey(const RasterJob& job, std::uint32_t source) {
    return ColourOfPixel(job.source, source) == job.key;
}

void CombinePixel(const RasterJob& job, int x, int y, std::uint32_t source) {
    const std::uint32_t pattern = NeedsPattern(job.rop) ? job.pattern.At(x, y) : 0;
    WritePixel(job.target, x, y, Combine(job.rop, pattern, source, ReadPixel(job.target, x, y)));
}

void DrawPixel(const RasterJob& job, int x, int y, std::uint32_t source) {
    const Surface& to = job.target;
    if (job.operation == RasterJob::Operation::Blend) {
        const std::uint32_t result = Blended(job.blend, Deep(job.source, source), Deep(to, ReadPixel(to, x, y)));
        return WritePixel(to, x, y, Shallow(to, result));
    }
    if (job.operation == RasterJob::Operation::Key) {
        if (!IsKey(job, source))
            WritePixel(to, x, y, job.colours(source));
        return;
    }
    CombinePixel(job, x, y, job.hasSource ? job.colours(source) : 0);
}

void DrawBox(const RasterJob& job, const pixman_box32_t& box) {
    for (int y = box.y1; y < box.y2; ++y) {
        const SourceRange rows = job.hasSource ? job.y.At(y, job.source.height) : SourceRange{};
        for (int x = box.x1; x < box.x2; ++x) {
            const SourceRange columns = job.hasSource ? job.x.At(x, job.source.width) : SourceRange{};
            if (!job.hasSource)
                DrawPixel(job, x, y, 0);
            else if (rows.empty || columns.empty)
                continue;
            else if (GathersPixels(job))
                CombinePixel(job, x, y, GatheredPixel(job, columns, rows));
            else
                DrawPixel(job, x, y, ReadPixel(job.source, columns.last, rows.first));
        }
    }
}

} // namespace

const std::uint32_t* Pattern::Row(int y) const {
    return pixels.data() + static_cast<std::ptrdiff_t>(Wrapped(y - origin.y, height)) * width;
}

int Pattern::Column(int x) const {
    return Wrapped(x - origin.x, width);
}

std::uint32_t Combine(unsigned rop, std::uint32_t pattern, std::uint32_t source, std::uint32_t target) {
    std::uint32_t result = 0;
    for (unsigned index = 0; index < 8; ++index)
        if (rop >> index & 1)
            result |=
                (index & 4 ? pattern : ~pattern) & (index & 2 ? source : ~source) & (index & 1 ? target : ~target);
    return result;
}

std::uint32_t Blended(const BLENDFUNCTION& function, std::uint32_t source, std::uint32_t target) {
    const bool perPixel = function.AlphaFormat == AC_SRC_ALPHA;
    const std::uint32_t constant = function.SourceConstantAlpha;
    const std::uint32_t left = 255 - (perPixel ? Scaled(source >> 24, constant) : constant);
    std::uint32_t result = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        const std::uint32_t from = Channel(source, shift);
        const std::uint32_t to = Channel(target, shift);
        const std::uint32_t sum =
            perPixel ? Scaled(from, constant) + Scaled(to, left) : (from * constant + to * left + 127) / 255;
        result |= std::min<std::uint32_t>(sum, 255) << shift;
    }
    return result;
}

void RunGeneric(const RasterJob& job) {
    ForEachBox(job, [&](const pixman_box32_t& box) { DrawBox(job, box); });
}

} // namespace kel::platform
