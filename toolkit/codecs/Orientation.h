#pragma once

#include "toolkit/codecs/Codec.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

/// @file
/// Photographs whose rows lie in the file as the camera was held (EXIF 2.32, tag 0x0112; the same tag of TIFF 6.0).
namespace kel::toolkit {

/// Where the first row and the first column of a file belong, by the values of the tag: 1 top and left, 2 top and
/// right, 3 bottom and right, 4 bottom and left, 5 left and top, 6 right and top, 7 right and bottom, 8 left and
/// bottom.
class Orientation {
public:
    /// Any value but 2 to 8 counts as 1.
    explicit Orientation(int tag = 1) : m_bits(tag >= 2 && tag <= 8 ? kBits[tag - 1] : 0) {}

    bool IsUpright() const { return m_bits == 0; }
    /// Rows of the file are columns of the picture.
    bool IsQuarterTurn() const { return (m_bits & kQuarter) != 0; }
    /// Columns count from the right, after a quarter turn has made rows of them.
    bool IsMirrored() const { return (m_bits & kMirror) != 0; }
    /// Rows count from the bottom, likewise.
    bool IsFlipped() const { return (m_bits & kFlip) != 0; }

private:
    static constexpr int kMirror = 1;
    static constexpr int kFlip = 2;
    static constexpr int kQuarter = 4;
    static constexpr int kBits[] = {
        0, kMirror, kMirror | kFlip, kFlip, kQuarter, kQuarter | kMirror, kQuarter | kMirror | kFlip, kQuarter | kFlip};

    int m_bits;
};

/// The orientation that an EXIF block states, with or without the "Exif\0\0" that precedes it in JPEG files; upright if
/// it states none or is damaged.
Orientation ReadOrientation(Bytes exif);

/// Puts the rows of a file where they belong in a picture, which is locked for as long as this object lives. Rows that
/// stay rows are decoded in place; others go through a strip of kStrip rows that is turned while it is in the cache.
class RowTarget {
public:
    static constexpr int kStrip = 64;

    /// @param upright the picture, made with the measures it has after turning
    RowTarget(const PackedDib& upright, Orientation orientation);

    /// False if the picture cannot be locked or there is no memory for a strip.
    explicit operator bool() const;

    int Rows() const { return m_rows; } ///< of the file
    std::span<RGBQUAD> Colours() const { return m_picture.Colours(); }

    /// Where row @p y of the file is to be written; the bytes are valid until its strip is finished.
    BYTE* Row(int y) const;

    /// Says that the rows from @p first are written, all in one strip: a multiple of kStrip and the rows up to the
    /// next.
    void Finish(int first, int count);

    /// Of the rows that are finished; none where rows become columns.
    std::optional<std::uint64_t> Fingerprint() const;

private:
    /// Where a row that stays one belongs.
    int PlaceOf(int y) const { return m_orientation.IsFlipped() ? m_rows - 1 - y : y; }
    void Turn(int first, int count) const;
    /// Those that there are: a strip takes no more than the picture, however long the rows are.
    std::size_t StripRows() const { return static_cast<std::size_t>(m_rows < kStrip ? m_rows : kStrip); }

    const DibLock m_picture;
    const Orientation m_orientation;
    const int m_rows;
    const int m_width; ///< of the file's rows
    const std::size_t m_stripBytes;
    const std::unique_ptr<BYTE[]> m_strip;
    std::uint64_t m_fingerprint = 0;
};

/// Makes the job's picture for rows of the file's measures, all of which are written: Fresh::Anything.
SHORT MakeTurnedPicture(LoadJob& job, Orientation orientation, std::int64_t width, std::int64_t height, int depth);

/// Turns a picture that has been decoded as its rows lie in the file, if the job asks for it.
/// @return kLoaded, or kOverBudget if there is no memory for the turned one.
SHORT TurnUpright(LoadJob& job, Orientation orientation);

} // namespace kel::toolkit
