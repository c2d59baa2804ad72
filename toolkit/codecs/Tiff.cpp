#include "toolkit/codecs/LibraryCodecs.h"
#include "toolkit/codecs/Orientation.h"
#include "toolkit/codecs/Samples.h"
#include "toolkit/codecs/TiffFile.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace kel::toolkit {
namespace {

/// The fields of the directory that say what a picture is made of, with the defaults of TIFF 6.0.
struct Fields {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint16_t bits = 1;
    std::uint16_t samples = 1;
    std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
    std::uint16_t planar = PLANARCONFIG_CONTIG;
    std::uint16_t format = SAMPLEFORMAT_UINT;
    std::uint16_t compression = COMPRESSION_NONE;
    std::uint16_t inks = INKSET_CMYK;
    std::uint16_t orientation = 1;
    std::uint16_t extra = EXTRASAMPLE_UNSPECIFIED; ///< what the first sample past the colours is
};

Fields ReadFields(TIFF* tiff) {
    Fields fields;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &fields.width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &fields.height);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &fields.bits);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &fields.samples);
    TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &fields.photometric);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &fields.planar);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLEFORMAT, &fields.format);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_COMPRESSION, &fields.compression);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_INKSET, &fields.inks);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_ORIENTATION, &fields.orientation);
    std::uint16_t extras = 0;
    std::uint16_t* kinds = nullptr;
    if (TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &extras, &kinds) && extras > 0)
        fields.extra = kinds[0];
    return fields;
}

/// How runs of samples become runs of pixels.
struct Plan {
    int depth = 0;                ///< of the picture; 0: the library has to make red, green, blue of the samples
    int used = 1;                 ///< of the samples of a pixel, the first ones
    ConvertRun convert = nullptr; ///< of used samples, 8 bits each (or 2, packed); none: they are the pixels
};

Plan PlanOfGreys(const Fields& fields) {
    const bool alpha = fields.extra != EXTRASAMPLE_UNSPECIFIED && fields.samples > 1;
    if (alpha && fields.photometric == PHOTOMETRIC_MINISBLACK && fields.bits >= 8)
        return {32, 2, fields.extra == EXTRASAMPLE_ASSOCALPHA ? &UnmultiplyGreyAlpha : &GreyAlpha};
    if (alpha || (fields.samples > 1 && fields.bits < 8))
        return {};
    return fields.bits == 2 ? Plan{4, 1, &Widen2To4} : Plan{std::min<int>(fields.bits, 8), 1, nullptr};
}

Plan PlanOfColours(const Fields& fields) {
    if (fields.samples == 3 || fields.extra == EXTRASAMPLE_UNSPECIFIED)
        return {24, 3, &SwapRgb};
    return {32, 4, fields.extra == EXTRASAMPLE_ASSOCALPHA ? &UnmultiplyRgba : &SwapRgba};
}

Plan PlanOf(const Fields& fields) {
    const bool whole = fields.bits == 8 || fields.bits == 16;
    if (fields.format != SAMPLEFORMAT_UINT && fields.format != SAMPLEFORMAT_VOID)
        return {};
    if (!whole && fields.bits != 1 && fields.bits != 2 && fields.bits != 4)
        return {};
    switch (fields.photometric) {
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_MINISBLACK:
        return PlanOfGreys(fields);
    case PHOTOMETRIC_PALETTE:
        return fields.samples == 1 && fields.bits <= 8 ? PlanOfGreys(fields) : Plan{};
    case PHOTOMETRIC_RGB:
        return whole && fields.samples >= 3 ? PlanOfColours(fields) : Plan{};
    case PHOTOMETRIC_SEPARATED:
        return whole && fields.samples >= 4 && fields.inks == INKSET_CMYK ? Plan{24, 4, &Cmyk} : Plan{};
    default:
        return {};
    }
}

/// JPEG data within the file is asked for as red, green, blue.
void AskForColours(TIFF* tiff, Fields& fields) {
    if (fields.photometric != PHOTOMETRIC_YCBCR || fields.compression != COMPRESSION_JPEG || fields.samples != 3 ||
        fields.planar != PLANARCONFIG_CONTIG)
        return;
    TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    fields.photometric = PHOTOMETRIC_RGB;
}

// Whole strips are decoded quicker than their rows, deflated ones in half the time. One that may be the whole picture
// is not worth the memory.
constexpr std::uint64_t kMostStripBytes = 8 * Budget::kMegabyte;

/// One picture on its way.
class Decoder {
public:
    Decoder(TIFF* tiff, const Fields& fields, const Plan& plan, const LoadJob& job)
        : m_tiff(tiff), m_fields(fields), m_plan(plan), m_most(job.budget.bytes), m_picture(job.picture) {
        if (m_fields.samples == 1)
            m_fields.planar = PLANARCONFIG_CONTIG;
    }

    SHORT Read() const {
        if (!m_picture)
            return kOverBudget;
        if (m_picture.Layout().depth <= 8 && !SetColours())
            return kDamaged;
        if (TIFFIsTiled(m_tiff))
            return ReadBlocks(TileGrid());
        const Grid strips = StripGrid();
        return IsApart() || strips.bytes <= std::min(kMostStripBytes, m_most) ? ReadBlocks(strips) : ReadScanlines();
    }

private:
    /// The pieces that pictures come in: tiles, or strips as wide as the picture.
    struct Grid {
        std::uint32_t width;
        std::uint32_t height;
        std::uint64_t rowBytes; ///< of one row of a piece, of one plane if planes are apart
        std::uint64_t bytes;    ///< of a piece
    };

    Grid TileGrid() const {
        Grid grid = {};
        TIFFGetField(m_tiff, TIFFTAG_TILEWIDTH, &grid.width);
        TIFFGetField(m_tiff, TIFFTAG_TILELENGTH, &grid.height);
        grid.rowBytes = TIFFTileRowSize64(m_tiff);
        grid.bytes = TIFFTileSize64(m_tiff);
        return grid;
    }

    Grid StripGrid() const {
        Grid grid = {m_fields.width, m_fields.height, TIFFScanlineSize64(m_tiff), 0};
        TIFFGetFieldDefaulted(m_tiff, TIFFTAG_ROWSPERSTRIP, &grid.height);
        grid.height = std::min(grid.height, m_fields.height);
        grid.bytes = grid.rowBytes * grid.height;
        return grid;
    }

    bool IsApart() const { return m_fields.planar == PLANARCONFIG_SEPARATE; }
    int Planes() const { return IsApart() ? m_plan.used : 1; }
    /// Bytes that a run takes as the library delivers it.
    std::uint64_t RunBytes(std::uint64_t count) const {
        return (count * m_fields.bits * (IsApart() ? 1U : m_fields.samples) + 7) / 8;
    }

    bool SetColours() const;
    SHORT ReadScanlines() const;
    SHORT ReadBlocks(const Grid& grid) const;
    bool ReadBlock(const Grid& grid, std::uint32_t x, std::uint32_t y, BYTE* block) const;
    void PutBlock(const Grid& grid, std::uint32_t x, std::uint32_t y, BYTE* block, BYTE* run) const;
    void Gather(const Grid& grid, const BYTE* row, BYTE* run, std::size_t count) const;
    void PutRun(BYTE* run, BYTE* to, std::size_t count, int samples) const;

    TIFF* const m_tiff;
    Fields m_fields;
    const Plan m_plan;
    const std::uint64_t m_most;
    const DibLock m_picture;
};

/// Old writers stored 8 bits in the 16 of a colour; a table without any higher one is taken for theirs.
bool Decoder::SetColours() const {
    const std::size_t count = std::size_t{1} << std::min<int>(m_fields.bits, 8);
    RGBQUAD* const colours = m_picture.Colours().data();
    if (m_fields.photometric != PHOTOMETRIC_PALETTE) {
        FillGreys(colours, count, m_fields.photometric == PHOTOMETRIC_MINISWHITE);
        return true;
    }
    std::uint16_t *red = nullptr, *green = nullptr, *blue = nullptr;
    if (!TIFFGetField(m_tiff, TIFFTAG_COLORMAP, &red, &green, &blue))
        return false;
    const auto isByte = [](std::uint16_t value) { return value < 256; };
    const bool bytes = std::all_of(red, red + count, isByte) && std::all_of(green, green + count, isByte) &&
                       std::all_of(blue, blue + count, isByte);
    const auto part = [bytes](std::uint16_t value) { return bytes ? static_cast<BYTE>(value) : Reduce16(value); };
    for (std::size_t i = 0; i < count; ++i)
        colours[i] = {part(blue[i]), part(green[i]), part(red[i]), 0};
    return true;
}

/// @param run its bytes are used up; may be @p to where pixels take what samples take
void Decoder::PutRun(BYTE* run, BYTE* to, std::size_t count, int samples) const {
    const auto given = static_cast<std::size_t>(samples);
    const auto used = static_cast<std::size_t>(m_plan.used);
    if (m_fields.bits == 16)
        for (std::size_t i = 0, from = 0; i < count * used; i += used, from += given)
            for (std::size_t k = 0; k < used; ++k) {
                std::uint16_t sample;
                std::memcpy(&sample, run + (from + k) * sizeof sample, sizeof sample);
                run[i + k] = Reduce16(sample);
            }
    else if (given > used)
        for (std::size_t i = 1; i < count; ++i)
            std::memmove(run + i * used, run + i * given, used);
    if (m_plan.convert)
        m_plan.convert(run, to, count);
    else if (run != to)
        std::memcpy(to, run, (count * std::min<std::size_t>(m_fields.bits, 8) + 7) / 8);
}

/// Rows that take in the file what they take in the picture are decoded where they belong.
SHORT Decoder::ReadScanlines() const {
    const std::uint64_t bytes = TIFFScanlineSize64(m_tiff);
    if (bytes != RunBytes(m_fields.width))
        return kDamaged;
    // Samples that nobody uses may make a row larger than any picture.
    if (bytes > std::max(kMostStripBytes, m_most))
        return kOverBudget;
    const bool direct = m_fields.bits <= 8 && m_fields.samples == m_plan.used &&
                        m_fields.bits * m_fields.samples == m_picture.Layout().depth;
    const std::unique_ptr<BYTE[]> run(direct ? nullptr : new (std::nothrow) BYTE[bytes]());
    if (!direct && !run)
        return kOverBudget;
    for (std::uint32_t y = 0; y < m_fields.height; ++y) {
        BYTE* const to = m_picture.Row(static_cast<int>(y));
        BYTE* const from = direct ? to : run.get();
        if (TIFFReadScanline(m_tiff, from, y, /*plane*/ 0) < 0)
            return kDamaged;
        PutRun(from, to, m_fields.width, m_fields.samples);
    }
    return kLoaded;
}

SHORT Decoder::ReadBlocks(const Grid& grid) const {
    if (grid.width == 0 || grid.height == 0 || grid.rowBytes != RunBytes(grid.width) ||
        grid.bytes < grid.rowBytes * grid.height || (m_fields.bits < 8 && grid.width % 8 != 0 && TIFFIsTiled(m_tiff)))
        return kDamaged;
    const auto planes = static_cast<std::uint64_t>(Planes());
    if (grid.bytes > m_most / planes)
        return kOverBudget;
    const std::unique_ptr<BYTE[]> block(new (std::nothrow) BYTE[grid.bytes * planes]());
    const std::unique_ptr<BYTE[]> run(new (std::nothrow) BYTE[grid.rowBytes * planes]);
    if (!block || !run)
        return kOverBudget;
    for (std::uint64_t y = 0; y < m_fields.height; y += grid.height)
        for (std::uint64_t x = 0; x < m_fields.width; x += grid.width) {
            const auto left = static_cast<std::uint32_t>(x);
            const auto top = static_cast<std::uint32_t>(y);
            if (!ReadBlock(grid, left, top, block.get()))
                return kDamaged;
            PutBlock(grid, left, top, block.get(), run.get());
        }
    return kLoaded;
}

bool Decoder::ReadBlock(const Grid& grid, std::uint32_t x, std::uint32_t y, BYTE* block) const {
    for (int i = 0; i < Planes(); ++i, block += grid.bytes) {
        const auto plane = static_cast<std::uint16_t>(i);
        const auto size = static_cast<tmsize_t>(grid.bytes);
        const tmsize_t read =
            TIFFIsTiled(m_tiff)
                ? TIFFReadEncodedTile(m_tiff, TIFFComputeTile(m_tiff, x, y, /*z*/ 0, plane), block, size)
                : TIFFReadEncodedStrip(m_tiff, TIFFComputeStrip(m_tiff, y, plane), block, size);
        if (read < 0)
            return false;
    }
    return true;
}

void Decoder::PutBlock(const Grid& grid, std::uint32_t x, std::uint32_t y, BYTE* block, BYTE* run) const {
    const std::size_t columns = std::min(grid.width, m_fields.width - x);
    const std::uint32_t rows = std::min(grid.height, m_fields.height - y);
    const std::size_t left = std::size_t{x} * static_cast<std::size_t>(m_picture.Layout().depth) / 8;
    for (std::uint32_t i = 0; i < rows; ++i) {
        BYTE* const row = block + grid.rowBytes * i;
        BYTE* const to = m_picture.Row(static_cast<int>(y + i)) + left;
        if (!IsApart()) {
            PutRun(row, to, columns, m_fields.samples);
            continue;
        }
        Gather(grid, row, run, columns);
        PutRun(run, to, columns, m_plan.used);
    }
}

/// Samples of planes that lie apart are brought together.
void Decoder::Gather(const Grid& grid, const BYTE* row, BYTE* run, std::size_t count) const {
    const std::size_t sample = m_fields.bits / 8;
    const std::size_t pixel = sample * static_cast<std::size_t>(m_plan.used);
    for (int k = 0; k < m_plan.used; ++k, row += grid.bytes, run += sample)
        for (std::size_t i = 0; i < count; ++i)
            std::memcpy(run + i * pixel, row + i * sample, sample);
}

/// Owns what the library prepares for its own conversion.
struct Rgba {
    TIFFRGBAImage image = {};
    bool begun = false;

    explicit Rgba(TIFF* tiff) {
        char message[1024] = "";
        begun =
            TIFFRGBAImageOK(tiff, message) != 0 && TIFFRGBAImageBegin(&image, tiff, /*stop on error*/ 1, message) != 0;
    }
    Rgba(const Rgba&) = delete;
    Rgba& operator=(const Rgba&) = delete;
    ~Rgba() {
        if (begun)
            TIFFRGBAImageEnd(&image);
    }
};

/// 32 bits without alpha to 24.
SHORT DropAlpha(LoadJob& job) {
    const PackedDib wide = std::exchange(job.picture, {});
    const DibLock from(wide);
    const SHORT status = MakePicture(job, from.Layout().width, from.Layout().height, 24);
    if (status != kLoaded)
        return status;
    const DibLock to(job.picture);
    if (!from || !to)
        return kOverBudget;
    for (int y = 0; y < to.Layout().height; ++y)
        for (int x = 0; x < to.Layout().width; ++x)
            std::memcpy(to.Row(y) + std::ptrdiff_t{x} * 3, from.Row(y) + std::ptrdiff_t{x} * 4, 3);
    return kLoaded;
}

/// The road of rare kinds: the library decodes rows from the bottom, in words that hold red lowest, straight into the
/// picture.
SHORT LoadByLibrary(TIFF* tiff, const Fields& fields, LoadJob& job) {
    Rgba rgba(tiff);
    if (!rgba.begun)
        return kDamaged;
    if (const SHORT status = MakePicture(job, fields.width, fields.height, 32); status != kLoaded)
        return status;
    {
        const DibLock picture(job.picture);
        if (!picture)
            return kOverBudget;
        rgba.image.orientation = ORIENTATION_TOPLEFT;
        rgba.image.req_orientation = ORIENTATION_BOTLEFT;
        const std::span<BYTE> pixels = picture.Pixels();
        if (!TIFFRGBAImageGet(&rgba.image, reinterpret_cast<std::uint32_t*>(pixels.data()), fields.width,
                              fields.height))
            return kDamaged;
        // Alpha has been multiplied in.
        UnmultiplyRgba(pixels.data(), pixels.data(), pixels.size() / 4);
    }
    return rgba.image.alpha == 0 ? DropAlpha(job) : kLoaded;
}

bool Sniff(Bytes file) {
    constexpr BYTE kKinds[][4] = {{'I', 'I', 42, 0}, {'M', 'M', 0, 42}, {'I', 'I', 43, 0}, {'M', 'M', 0, 43}};
    return file.size() >= 4 &&
           std::ranges::any_of(kKinds, [&](const BYTE(&kind)[4]) { return std::memcmp(file.data(), kind, 4) == 0; });
}

SHORT LoadStored(TIFF* tiff, Fields fields, LoadJob& job) {
    AskForColours(tiff, fields);
    const Plan plan = PlanOf(fields);
    if (plan.depth == 0)
        return LoadByLibrary(tiff, fields, job);
    // Rows that the library decodes into the picture may be left unwritten by damage that it does not tell.
    const bool whole = TIFFIsTiled(tiff) || TIFFStripSize64(tiff) <= kMostStripBytes;
    const SHORT status = MakePicture(job, fields.width, fields.height, plan.depth, /*colours*/ 0,
                                     whole ? Fresh::Anything : Fresh::Zeros);
    return status == kLoaded ? Decoder(tiff, fields, plan, job).Read() : status;
}

SHORT Load(LoadJob& job) {
    TiffSource source{job.file};
    const Tiff tiff = OpenTiff(source, job.budget.bytes + Budget::kMegabyte);
    if (!tiff)
        return kDamaged;
    const Fields fields = ReadFields(tiff.get());
    const SHORT status = LoadStored(tiff.get(), fields, job);
    return status == kLoaded ? TurnUpright(job, Orientation(fields.orientation)) : status;
}

} // namespace

const Codec kTiffCodec = {"TIFF", &Sniff, &Load};

} // namespace kel::toolkit
