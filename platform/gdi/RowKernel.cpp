#include "platform/gdi/RowKernel.h"
#include "platform/gdi/Colours.h"
#include "platform/gdi/PixelAccess.h"

#include <algorithm>
#include <cstring>

namespace kel::platform {
namespace {

using Operation = RasterJob::Operation;
using Line = std::vector<std::uint8_t>;

// Targets as large as this do not stay in the caches, so that writing past them is quicker.
constexpr std::size_t kStreamBytes = std::size_t{24} << 20;

bool HasBytes(PixelFormat format) {
    return format >= PixelFormat::Indexed8;
}

std::size_t BytesOf(PixelFormat format) {
    return static_cast<std::size_t>(BitsPerPixel(format) / 8);
}

bool IsDeep(PixelFormat format) {
    return format == PixelFormat::Bgr24 || format == PixelFormat::Bgrx32;
}

/// Whether every target pixel takes one source pixel.
bool TakesOne(const RasterJob& job) {
    return job.stretchMode == COLORONCOLOR || (job.x.toSize >= job.x.fromSize && job.y.toSize >= job.y.fromSize);
}

bool BlendsByPixel(const RasterJob& job) {
    return job.operation == Operation::Blend && job.blend.AlphaFormat == AC_SRC_ALPHA;
}

/// Draws one box, row by row. How rows are fetched and what becomes of them is chosen once, by formats and operation.
class Rows {
public:
    Rows(const RasterJob& job, const pixman_box32_t& box, const RowRoad& road)
        : m_job(job), m_road(road), m_left(box.x1), m_right(box.x2), m_bytes(BytesOf(job.target.format)) {
        if (job.hasSource)
            MapColumns();
        if (m_left >= m_right)
            return;
        const std::size_t written = Count() * m_bytes * static_cast<std::size_t>(box.y2 - box.y1);
        m_apply = Applying(written >= kStreamBytes);
        if (job.hasSource)
            m_fetch = Fetching();
    }

    void Draw(int y) {
        if (m_left >= m_right)
            return;
        if (m_job.hasSource) {
            const SourceRange rows = m_job.y.At(y, m_job.source.height);
            if (rows.empty)
                return;
            m_wanted = rows.first;
        }
        (this->*m_apply)(m_job.target.Row(y) + static_cast<std::size_t>(m_left) * m_bytes, y);
    }

private:
    using Apply = void (Rows::*)(std::uint8_t* to, int y);
    using Fetch = const std::uint8_t* (Rows::*)(std::uint8_t* room);

    std::size_t Count() const { return static_cast<std::size_t>(m_right - m_left); }
    std::size_t CountBytes() const { return Count() * m_bytes; }

    // Columns that the source does not reach are at the ends.
    void MapColumns() {
        const auto at = [&](int x) { return m_job.x.At(x, m_job.source.width); };
        while (m_left < m_right && at(m_left).empty)
            ++m_left;
        while (m_left < m_right && at(m_right - 1).empty)
            --m_right;
        if (m_left >= m_right)
            return;
        m_first = at(m_left).last;
        if (!m_job.x.IsOneToOne())
            PlanColumns();
    }

    void PlanColumns() {
        std::vector<int> columns;
        columns.reserve(Count());
        for (int x = m_left; x < m_right; ++x)
            columns.push_back(m_job.x.At(x, m_job.source.width).last);
        m_plan = ColumnPlan(std::move(columns), BitsPerPixel(m_job.source.format) / 8, m_job.source.width);
    }

    // --- source rows, in the form that the operation wants; what is not to be had as it lies goes into the room

    /// Colours are weighed in the target's form, laid on each other with their alpha.
    PixelFormat Wanted() const { return BlendsByPixel(m_job) ? PixelFormat::Bgrx32 : m_job.target.format; }

    Fetch Fetching() const {
        const PixelFormat from = m_job.source.format;
        const bool picks = !m_plan.IsEmpty();
        if (IsDeep(from) && IsDeep(Wanted()) && from != Wanted())
            return picks ? &Rows::PickedAndConverted : &Rows::Converted;
        if (!HasBytes(from) || (m_job.operation == Operation::Raster && !m_job.colours.IsSame()))
            return &Rows::ConvertedSingly;
        return picks ? &Rows::Picked : &Rows::Straight;
    }

    const std::uint8_t* SourceRow() const { return m_job.source.Row(m_wanted); }

    const std::uint8_t* Straight(std::uint8_t* /*room*/) {
        return SourceRow() + static_cast<std::size_t>(m_first) * BytesOf(m_job.source.format);
    }

    const std::uint8_t* Picked(std::uint8_t* room) {
        m_road.pick(room, SourceRow(), m_plan);
        return room;
    }

    const std::uint8_t* Converted(std::uint8_t* room) { return Convert(room, Straight(room)); }

    const std::uint8_t* PickedAndConverted(std::uint8_t* room) { return Convert(room, Picked(Room(m_picked))); }

    const std::uint8_t* Convert(std::uint8_t* room, const std::uint8_t* row) {
        (Wanted() == PixelFormat::Bgrx32 ? m_road.widen : m_road.narrow)(room, row, Count());
        return room;
    }

    const std::uint8_t* ConvertedSingly(std::uint8_t* room) {
        for (std::size_t i = 0; i < Count(); ++i) {
            const int x = m_plan.IsEmpty() ? m_first + static_cast<int>(i) : m_plan.Columns()[i];
            const std::uint32_t pixel = m_job.colours(ReadPixel(m_job.source, x, m_wanted));
            std::memcpy(room + i * m_bytes, &pixel, m_bytes);
        }
        return room;
    }

    /// The fetched row; enlarged pictures take it several times.
    const std::uint8_t* Source() {
        if (m_wanted != m_held)
            m_row = (this->*m_fetch)(Room(m_fetched));
        m_held = m_wanted;
        return m_row;
    }

    std::uint8_t* Room(Line& line) const {
        line.resize(Count() * 4);
        return line.data();
    }

    // --- operations

    Apply Applying(bool streams) const {
        switch (m_job.operation) {
        case Operation::Key:
            return &Rows::CopyUnlessKey;
        case Operation::Blend:
            return !BlendsByPixel(m_job) ? &Rows::Weigh : m_bytes == 4 ? &Rows::Lay32 : &Rows::Lay24;
        default:
            return ApplyingRaster(streams);
        }
    }

    Apply ApplyingRaster(bool streams) const {
        if (m_job.rop == SRCCOPY >> 16)
            return streams ? &Rows::StreamSource : &Rows::Copy;
        if (m_job.rop == PATCOPY >> 16)
            return &Rows::DrawPattern;
        return &Rows::Combine;
    }

    // Right into the target, where the next row finds it if it takes the same one.
    void Copy(std::uint8_t* to, int /*y*/) {
        if (m_wanted != m_held)
            m_row = (this->*m_fetch)(to);
        m_held = m_wanted;
        if (m_row != to)
            std::memmove(to, m_row, CountBytes());
    }

    void StreamSource(std::uint8_t* to, int /*y*/) { m_road.stream(to, Source(), CountBytes()); }

    void Combine(std::uint8_t* to, int y) {
        const std::uint8_t* source = m_job.hasSource ? Source() : nullptr;
        const std::uint8_t* pattern = NeedsPattern(m_job.rop) ? PatternRow(y) : nullptr;
        m_road.combine(to, source, pattern, CountBytes(), m_job.rop);
    }

    void CopyUnlessKey(std::uint8_t* to, int /*y*/) {
        (m_bytes == 3 ? m_road.copyUnless24 : m_road.copyUnless32)(to, Source(), Count(), Swapped(m_job.key));
    }

    void Weigh(std::uint8_t* to, int /*y*/) {
        m_road.weigh(to, Source(), CountBytes(), m_job.blend.SourceConstantAlpha);
    }

    void Lay32(std::uint8_t* to, int /*y*/) { m_road.lay(to, Source(), Count(), m_job.blend.SourceConstantAlpha); }

    void Lay24(std::uint8_t* to, int /*y*/) {
        std::uint8_t* const wide = Room(m_widened);
        m_road.widen(wide, to, Count());
        m_road.lay(wide, Source(), Count(), m_job.blend.SourceConstantAlpha);
        m_road.narrow(to, wide, Count());
    }

    // --- patterns

    const std::uint8_t* PatternRow(int y) {
        const bool again = m_job.pattern.width == 0 && !m_pattern.empty();
        if (!again)
            DrawPattern(Room(m_pattern), y);
        return m_pattern.data();
    }

    // A repeated pattern once, and that over again.
    void DrawPattern(std::uint8_t* to, int y) {
        const Pattern& pattern = m_job.pattern;
        if (pattern.width == 0)
            return m_road.fill(to, pattern.solid, Count(), static_cast<int>(m_bytes));
        const std::uint32_t* row = pattern.Row(y);
        const auto start = static_cast<std::size_t>(pattern.Column(m_left));
        const auto width = static_cast<std::size_t>(pattern.width);
        const std::size_t period = std::min(Count(), width);
        const std::size_t ahead = std::min(period, width - start);
        StorePixels(to, row + start, ahead);
        StorePixels(to + ahead * m_bytes, row, period - ahead);
        RepeatBytes(to, period * m_bytes, CountBytes());
    }

    void StorePixels(std::uint8_t* to, const std::uint32_t* pixels, std::size_t count) const {
        if (m_bytes == 4)
            std::memcpy(to, pixels, count * 4);
        else if (m_bytes == 3)
            m_road.narrow(to, reinterpret_cast<const std::uint8_t*>(pixels), count);
        else
            for (std::size_t i = 0; i < count; ++i)
                std::memcpy(to + i * m_bytes, pixels + i, m_bytes);
    }

    const RasterJob& m_job;
    const RowRoad& m_road;
    int m_left;
    int m_right;
    const std::size_t m_bytes; // of a target pixel
    int m_first = 0;           // the source column of the left pixel
    ColumnPlan m_plan;         // empty one to one
    Apply m_apply = nullptr;
    Fetch m_fetch = nullptr;
    int m_wanted = 0; // the source row
    int m_held = -1;  // the one that m_row was fetched from
    const std::uint8_t* m_row = nullptr;
    Line m_picked;
    Line m_fetched;
    Line m_widened;
    Line m_pattern;
};

// --- copies of pixels as they are

bool IsPlainCopy(const RasterJob& job) {
    return job.hasSource && job.operation == Operation::Raster && job.rop == SRCCOPY >> 16 && job.IsOneToOne() &&
           job.source.format == job.target.format && job.colours.IsSame();
}

int Clamped(std::int64_t value, int low, int high) {
    return static_cast<int>(std::clamp<std::int64_t>(value, low, std::max(low, high)));
}

void CopyBox(const RasterJob& job, pixman_box32_t box, bool upwards) {
    const std::int64_t right = job.x.from - job.x.to; // from target to source
    const std::int64_t down = job.y.from - job.y.to;
    box = {Clamped(-right, box.x1, box.x2), Clamped(-down, box.y1, box.y2),
           Clamped(job.source.width - right, box.x1, box.x2), Clamped(job.source.height - down, box.y1, box.y2)};
    if (box.x1 >= box.x2 || box.y1 >= box.y2)
        return;
    const std::size_t pixel = BytesOf(job.target.format);
    const std::size_t bytes = static_cast<std::size_t>(box.x2 - box.x1) * pixel;
    const int rows = box.y2 - box.y1;
    std::ptrdiff_t toStride = job.target.stride;
    std::ptrdiff_t fromStride = job.source.stride;
    const int start = upwards ? box.y2 - 1 : box.y1;
    std::uint8_t* to = job.target.Row(start) + static_cast<std::size_t>(box.x1) * pixel;
    const std::uint8_t* from =
        job.source.Row(static_cast<int>(start + down)) + static_cast<std::size_t>(box.x1 + right) * pixel;
    if (upwards) {
        toStride = -toStride;
        fromStride = -fromStride;
    }
    // Rows without gaps are one row.
    if (toStride == fromStride && toStride == static_cast<std::ptrdiff_t>(bytes)) {
        std::memmove(to, from, bytes * static_cast<std::size_t>(rows));
        return;
    }
    for (int i = 0; i < rows; ++i, to += toStride, from += fromStride)
        std::memmove(to, from, bytes);
}

bool SuitsKey(const RasterJob& job) {
    return IsDeep(job.target.format) && job.source.format == job.target.format;
}

bool SuitsBlend(const RasterJob& job) {
    return IsDeep(job.target.format) && IsDeep(job.source.format);
}

} // namespace

bool IsForRows(const RasterJob& job) {
    if (!HasBytes(job.target.format) || (job.hasSource && !TakesOne(job)))
        return false;
    return job.operation == Operation::Key ? SuitsKey(job) : job.operation == Operation::Blend ? SuitsBlend(job) : true;
}

void RunRows(const RasterJob& job, RowOrder order, const RowRoad& road) {
    const bool upwards = order == RowOrder::AsInMemory ? job.target.stride < 0 : order == RowOrder::Upwards;
    const bool copies = IsPlainCopy(job);
    ForEachBox(job, [&](const pixman_box32_t& box) {
        if (copies)
            return CopyBox(job, box, upwards);
        Rows rows(job, box, road);
        for (int i = 0; i < box.y2 - box.y1; ++i)
            rows.Draw(upwards ? box.y2 - 1 - i : box.y1 + i);
        road.settle();
    });
}

} // namespace kel::platform
