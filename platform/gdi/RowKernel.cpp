#include "platform/gdi/RowKernel.h"
#include "platform/gdi/Colours.h"
#include "platform/gdi/PixelAccess.h"
#include "platform/gdi/kernels/Rows.h"

#include <algorithm>
#include <cstring>

namespace kel::platform {
namespace {

using Operation = RasterJob::Operation;
using Line = std::vector<std::uint8_t>;

constexpr std::size_t kSlack = 4; // kernels may write a pixel's fourth byte

bool HasBytes(PixelFormat format) {
    return format >= PixelFormat::Indexed8;
}

int BytesOf(const Surface& surface) {
    return BitsPerPixel(surface.format) / 8;
}

bool IsDeep(PixelFormat format) {
    return format == PixelFormat::Bgr24 || format == PixelFormat::Bgrx32;
}

/// Whether every target pixel takes one source pixel.
bool TakesOne(const RasterJob& job) {
    return job.stretchMode == COLORONCOLOR || (job.x.toSize >= job.x.fromSize && job.y.toSize >= job.y.fromSize);
}

/// Draws one box, row by row.
class Rows {
public:
    Rows(const RasterJob& job, const pixman_box32_t& box)
        : m_job(job), m_left(box.x1), m_right(box.x2), m_bytes(static_cast<std::size_t>(BytesOf(job.target))) {
        if (job.hasSource)
            MapColumns();
        const std::size_t room = Count() * 4 + kSlack;
        m_picked.resize(room);
        m_converted.resize(room);
        if (NeedsPattern(job.rop) && job.operation == Operation::Raster)
            m_pattern.resize(room);
    }

    void Draw(int y) {
        if (m_left >= m_right)
            return;
        std::uint8_t* to = m_job.target.Row(y) + static_cast<std::size_t>(m_left) * m_bytes;
        const std::uint8_t* source = nullptr;
        if (m_job.hasSource) {
            const SourceRange rows = m_job.y.At(y, m_job.source.height);
            if (rows.empty)
                return;
            source = Source(rows.first);
        }
        Apply(to, source, y);
    }

private:
    std::size_t Count() const { return static_cast<std::size_t>(m_right - m_left); }

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
        if (m_job.x.IsOneToOne())
            return;
        for (int x = m_left; x < m_right; ++x)
            m_columns.push_back(at(x).last);
    }

    const std::uint8_t* Source(int y) {
        if (y == m_row)
            return m_source;
        m_row = y;
        const std::uint8_t* row = m_job.source.Row(y);
        if (!HasBytes(m_job.source.format) || !Convertible())
            return m_source = ConvertSingly(y);
        const auto bytes = static_cast<std::size_t>(BytesOf(m_job.source));
        const std::uint8_t* picked = row + static_cast<std::size_t>(m_first) * bytes;
        if (!m_columns.empty()) {
            PickPixels(m_picked.data(), row, m_columns.data(), Count(), static_cast<int>(bytes));
            picked = m_picked.data();
        }
        return m_source = Convert(picked);
    }

    bool Convertible() const {
        return m_job.colours.IsSame() || (IsDeep(m_job.source.format) && IsDeep(m_job.target.format));
    }

    const std::uint8_t* Convert(const std::uint8_t* picked) {
        if (m_job.operation == Operation::Blend)
            return Deep(picked);
        if (m_job.source.format == m_job.target.format)
            return picked;
        (m_bytes == 4 ? Widen : Narrow)(m_converted.data(), picked, Count());
        return m_converted.data();
    }

    const std::uint8_t* ConvertSingly(int y) {
        for (std::size_t i = 0; i < Count(); ++i) {
            const int x = m_columns.empty() ? m_first + static_cast<int>(i) : m_columns[i];
            const std::uint32_t pixel = m_job.colours(ReadPixel(m_job.source, x, y));
            std::memcpy(m_converted.data() + i * m_bytes, &pixel, m_bytes);
        }
        return m_converted.data();
    }

    const std::uint8_t* PatternRow(int y) {
        const Pattern& pattern = m_job.pattern;
        if (pattern.width == 0) {
            if (!m_filled)
                FillPixels(m_pattern.data(), pattern.solid, Count(), static_cast<int>(m_bytes));
            m_filled = true;
            return m_pattern.data();
        }
        for (std::size_t i = 0; i < Count(); ++i) {
            const std::uint32_t pixel = pattern.At(m_left + static_cast<int>(i), y);
            std::memcpy(m_pattern.data() + i * m_bytes, &pixel, m_bytes);
        }
        return m_pattern.data();
    }

    const std::uint8_t* Deep(const std::uint8_t* picked) {
        if (m_job.source.format == PixelFormat::Bgrx32)
            return picked;
        Widen(m_converted.data(), picked, Count());
        return m_converted.data();
    }

    void Blend(std::uint8_t* to, const std::uint8_t* source) {
        if (m_bytes == 4)
            return BlendPixels(to, source, Count(), m_job.blend);
        m_pattern.resize(Count() * 4);
        Widen(m_pattern.data(), to, Count());
        BlendPixels(m_pattern.data(), source, Count(), m_job.blend);
        Narrow(to, m_pattern.data(), Count());
    }

    void Apply(std::uint8_t* to, const std::uint8_t* source, int y) {
        if (m_job.operation == Operation::Key)
            return CopyUnlessKey(to, source, Count(), static_cast<int>(m_bytes), Swapped(m_job.key));
        if (m_job.operation == Operation::Blend)
            return Blend(to, source);
        const std::uint8_t* pattern = NeedsPattern(m_job.rop) ? PatternRow(y) : nullptr;
        if (m_job.rop == SRCCOPY >> 16)
            std::memmove(to, source, Count() * m_bytes);
        else if (m_job.rop == PATCOPY >> 16)
            std::memcpy(to, pattern, Count() * m_bytes);
        else
            CombineBytes(to, source, pattern, Count() * m_bytes, m_job.rop);
    }

    const RasterJob& m_job;
    int m_left;
    int m_right;
    const std::size_t m_bytes;
    int m_first = 0;            // the source column of the left pixel
    std::vector<int> m_columns; // of all pixels, empty one to one
    int m_row = -1;             // the source row that m_source was made from
    const std::uint8_t* m_source = nullptr;
    bool m_filled = false;
    Line m_picked;
    Line m_converted;
    Line m_pattern;
};

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

void RunRows(const RasterJob& job, bool upwards) {
    ForEachBox(job, [&](const pixman_box32_t& box) {
        Rows rows(job, box);
        for (int i = 0; i < box.y2 - box.y1; ++i)
            rows.Draw(upwards ? box.y2 - 1 - i : box.y1 + i);
    });
}

} // namespace kel::platform
