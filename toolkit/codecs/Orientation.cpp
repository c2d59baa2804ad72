#include "toolkit/codecs/Orientation.h"

#include "toolkit/Fingerprint.h"
#include "toolkit/Pixels.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>

namespace kel::toolkit {
namespace {

// The numbers of an EXIF block, which says itself in which order their bytes are. What lies outside reads as 0.
class ExifNumbers {
public:
    explicit ExifNumbers(Bytes block) : m_block(block), m_big(!block.empty() && block[0] == 'M') {}

    std::uint32_t Word(std::size_t at) const {
        if (at + 2 > m_block.size())
            return 0;
        return m_big ? m_block[at] << 8 | m_block[at + 1] : m_block[at + 1] << 8 | m_block[at];
    }
    std::uint32_t Long(std::size_t at) const {
        return m_big ? Word(at) << 16 | Word(at + 2) : Word(at + 2) << 16 | Word(at);
    }

private:
    const Bytes m_block;
    const bool m_big;
};

// Column x of a strip becomes a run within one row of the picture: `count` pixels from `column` on.
struct Strip {
    const BYTE* rows;
    std::size_t rowBytes;
    int count;
    int column;
    bool mirrored; ///< the strip's last row comes first

    int RowOf(int i) const { return mirrored ? count - 1 - i : i; }
    const BYTE* Begin() const { return rows + rowBytes * static_cast<std::size_t>(RowOf(0)); }
    std::ptrdiff_t Step() const {
        const auto bytes = static_cast<std::ptrdiff_t>(rowBytes);
        return mirrored ? -bytes : bytes;
    }
};

template <class Pixels>
void CopyColumn(Pixels pixels, const Strip& strip, int x, BYTE* row) {
    const BYTE* from = strip.Begin();
    for (int i = 0; i < strip.count; ++i, from += strip.Step())
        pixels.Store(row, strip.column + i, pixels.Load(from, x));
}

} // namespace

Orientation ReadOrientation(Bytes exif) {
    constexpr std::string_view kPrefix("Exif\0\0", 6);
    constexpr std::uint32_t kTag = 0x0112;
    constexpr std::size_t kEntryBytes = 12;
    if (exif.size() >= kPrefix.size() && std::memcmp(exif.data(), kPrefix.data(), kPrefix.size()) == 0)
        exif = exif.subspan(kPrefix.size());
    const ExifNumbers numbers(exif);
    const std::size_t directory = numbers.Long(4);
    if (directory >= exif.size())
        return Orientation();
    const std::size_t entries = numbers.Word(directory);
    for (std::size_t i = 0; i < entries; ++i) {
        const std::size_t entry = directory + 2 + i * kEntryBytes;
        if (numbers.Word(entry) == kTag)
            return Orientation(static_cast<int>(numbers.Word(entry + 8)));
    }
    return Orientation();
}

RowTarget::RowTarget(const PackedDib& upright, Orientation orientation)
    : m_picture(upright), m_orientation(orientation),
      m_rows(orientation.IsQuarterTurn() ? upright.Layout().width : upright.Layout().height),
      m_width(orientation.IsQuarterTurn() ? upright.Layout().height : upright.Layout().width),
      m_stripBytes(static_cast<std::size_t>(RowBytesOf(m_width, upright.Layout().depth))),
      m_strip(orientation.IsQuarterTurn() ? new (std::nothrow) BYTE[m_stripBytes * StripRows()] : nullptr) {}

RowTarget::operator bool() const {
    return m_picture && (m_strip || !m_orientation.IsQuarterTurn());
}

BYTE* RowTarget::Row(int y) const {
    if (m_orientation.IsQuarterTurn())
        return m_strip.get() + m_stripBytes * static_cast<std::size_t>(y % kStrip);
    return m_picture.Row(PlaceOf(y));
}

void RowTarget::Finish(int first, int count) {
    if (m_orientation.IsQuarterTurn())
        return Turn(first, count);
    if (m_orientation.IsMirrored())
        WithPixels(m_picture.Layout().depth, [&](auto pixels) {
            for (int y = first; y < first + count; ++y)
                MirrorRow(pixels, Row(y), m_width);
        });
    for (int y = first; y < first + count; ++y)
        m_fingerprint += RowFingerprint(m_picture, PlaceOf(y));
}

std::optional<std::uint64_t> RowTarget::Fingerprint() const {
    return m_orientation.IsQuarterTurn() ? std::nullopt : std::optional(m_fingerprint);
}

void RowTarget::Turn(int first, int count) const {
    const bool mirrored = m_orientation.IsMirrored();
    const Strip strip{m_strip.get(), m_stripBytes, count, mirrored ? m_rows - first - count : first, mirrored};
    WithPixels(m_picture.Layout().depth, [&](auto pixels) {
        for (int x = 0; x < m_width; ++x)
            CopyColumn(pixels, strip, x, m_picture.Row(m_orientation.IsFlipped() ? m_width - 1 - x : x));
    });
}

SHORT MakeTurnedPicture(LoadJob& job, Orientation orientation, std::int64_t width, std::int64_t height, int depth) {
    if (orientation.IsQuarterTurn())
        std::swap(width, height);
    return MakePicture(job, width, height, depth, /*colours*/ 0, Fresh::Anything);
}

SHORT TurnUpright(LoadJob& job, Orientation orientation) {
    if (job.keepOrientation || orientation.IsUpright())
        return kLoaded;
    const PackedDib stored = std::exchange(job.picture, {});
    const DibLayout& layout = stored.Layout();
    const SHORT status = MakeTurnedPicture(job, orientation, layout.width, layout.height, layout.depth);
    const DibLock from(stored);
    RowTarget to(job.picture, orientation);
    if (status != kLoaded || !from || !to)
        return kOverBudget;
    std::ranges::copy(from.Colours(), to.Colours().begin());
    for (int y = 0; y < layout.height; y += RowTarget::kStrip) {
        const int count = std::min(RowTarget::kStrip, layout.height - y);
        for (int i = 0; i < count; ++i)
            std::memcpy(to.Row(y + i), from.Row(y + i), layout.rowBytes);
        to.Finish(y, count);
    }
    return kLoaded;
}

} // namespace kel::toolkit
