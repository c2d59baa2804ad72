#include "toolkit/codecs/LibraryCodecs.h"
#include "toolkit/codecs/LongJump.h"
#include "toolkit/codecs/Orientation.h"
#include "toolkit/codecs/Samples.h"

#include <algorithm>
#include <array>
#include <cstring>

#include <png.h>

namespace kel::toolkit {
namespace {

constexpr std::size_t kSignatureBytes = 8;

/// libpng's reader of a file in memory, with handlers that end in a jump.
struct Reader {
    Bytes rest;
    LongJump jump;
    png_structp png = nullptr;
    png_infop info = nullptr;

    explicit Reader(Bytes file) : rest(file) {
        png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, &OnError, &OnWarning);
        info = png ? png_create_info_struct(png) : nullptr;
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() { png_destroy_read_struct(&png, &info, nullptr); }

    [[noreturn]] static void OnError(png_structp png, png_const_charp) {
        static_cast<Reader*>(png_get_error_ptr(png))->jump.Fail(kDamaged);
    }
    static void OnWarning(png_structp, png_const_charp) {}

    static void OnRead(png_structp png, png_bytep to, std::size_t count) {
        Bytes& rest = static_cast<Reader*>(png_get_io_ptr(png))->rest;
        if (count > rest.size())
            png_error(png, "the file ends early");
        std::memcpy(to, rest.data(), count);
        rest = rest.subspan(count);
    }
};

/// What the picture is made of, from the header.
struct Shape {
    int kind = 0; ///< PNG_COLOR_TYPE_…
    int bits = 0; ///< of a sample in the file
    bool transparent = false;

    bool IsIndexed() const { return !transparent && (kind == PNG_COLOR_TYPE_PALETTE || kind == PNG_COLOR_TYPE_GRAY); }
    bool IsWidened() const { return IsIndexed() && bits == 2; }
    int Depth() const {
        if (IsIndexed())
            return bits == 2 ? 4 : std::min(bits, 8);
        return transparent || (kind & PNG_COLOR_MASK_ALPHA) != 0 ? 32 : 24;
    }
};

/// Reads what precedes the pixels. Texts, profiles and the like are passed over unread, the orientation excepted.
SHORT ReadHeader(Reader& reader, Shape& shape) {
    static constexpr png_byte kExif[] = "eXIf";
    png_set_read_fn(reader.png, &reader, &Reader::OnRead);
    // The budget alone says how large a picture may be.
    png_set_user_limits(reader.png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_keep_unknown_chunks(reader.png, PNG_HANDLE_CHUNK_NEVER, nullptr, /*all*/ -1);
    png_set_keep_unknown_chunks(reader.png, PNG_HANDLE_CHUNK_AS_DEFAULT, kExif, /*chunks*/ 1);
    png_read_info(reader.png, reader.info);
    shape.kind = png_get_color_type(reader.png, reader.info);
    shape.bits = png_get_bit_depth(reader.png, reader.info);
    shape.transparent = png_get_valid(reader.png, reader.info, PNG_INFO_tRNS) != 0;
    return kLoaded;
}

/// Asks the library for pixels as a packed bitmap of the shape's depth has them, but for widening.
void ChooseOutput(Reader& reader, const Shape& shape) {
    if (shape.bits == 16)
        png_set_scale_16(reader.png);
    if (shape.IsIndexed())
        return;
    png_set_expand(reader.png);
    png_set_gray_to_rgb(reader.png);
    png_set_bgr(reader.png);
}

/// The passes of an interlaced file add to what is there, so that all of them go where the rows belong.
SHORT ReadRows(Reader& reader, const Shape& shape, const DibLock& picture) {
    ChooseOutput(reader, shape);
    const int passes = png_set_interlace_handling(reader.png);
    png_read_update_info(reader.png, reader.info);
    if (!shape.IsWidened() && png_get_rowbytes(reader.png, reader.info) > picture.Layout().rowBytes)
        return kDamaged;
    for (int pass = 0; pass < passes; ++pass)
        for (int y = 0; y < picture.Layout().height; ++y)
            png_read_row(reader.png, picture.Row(y), nullptr);
    png_read_end(reader.png, reader.info);
    return kLoaded;
}

/// Rows of 2-bit pixels lie in the first halves of their rows; from the end on they are widened in place.
void WidenRows(const DibLock& picture) {
    std::array<BYTE, 64> narrow;
    constexpr std::size_t kBlock = narrow.size() * 4;
    const auto width = static_cast<std::size_t>(picture.Layout().width);
    for (int y = 0; y < picture.Layout().height; ++y) {
        BYTE* const row = picture.Row(y);
        for (std::size_t x = (width - 1) / kBlock * kBlock;; x -= kBlock) {
            const std::size_t count = std::min(kBlock, width - x);
            std::memcpy(narrow.data(), row + x / 4, (count + 3) / 4);
            Widen2To4(narrow.data(), row + x / 2, count);
            if (x == 0)
                break;
        }
    }
}

void SetColours(const Reader& reader, const Shape& shape, std::span<RGBQUAD> colours) {
    png_colorp palette = nullptr;
    int count = 0;
    if (shape.kind == PNG_COLOR_TYPE_GRAY)
        return FillGreys(colours.data(), std::size_t{1} << std::min(shape.bits, 8));
    if (png_get_PLTE(reader.png, reader.info, &palette, &count) == 0)
        return;
    const std::size_t most = std::min<std::size_t>(static_cast<std::size_t>(count), colours.size());
    for (std::size_t i = 0; i < most; ++i)
        colours[i] = {palette[i].blue, palette[i].green, palette[i].red, 0};
}

Orientation OrientationOf(const Reader& reader) {
    png_uint_32 count = 0;
    png_bytep exif = nullptr;
    return png_get_eXIf_1(reader.png, reader.info, &count, &exif) != 0 ? ReadOrientation({exif, count}) : Orientation();
}

bool Sniff(Bytes file) {
    return file.size() >= kSignatureBytes && png_sig_cmp(file.data(), 0, kSignatureBytes) == 0;
}

SHORT LoadStored(LoadJob& job, Reader& reader) {
    Shape shape;
    SHORT status = reader.jump.Run([&] { return ReadHeader(reader, shape); });
    if (status == kLoaded)
        // The library leaves the bits behind a row's last pixel as they are; widening makes pixels of them.
        status = MakePicture(job, png_get_image_width(reader.png, reader.info),
                             png_get_image_height(reader.png, reader.info), shape.Depth(), /*colours*/ 0,
                             shape.IsWidened() ? Fresh::Zeros : Fresh::Anything);
    if (status != kLoaded)
        return status;
    const DibLock picture(job.picture);
    if (!picture)
        return kOverBudget;
    if (shape.IsIndexed())
        SetColours(reader, shape, picture.Colours());
    status = reader.jump.Run([&] { return ReadRows(reader, shape, picture); });
    if (status == kLoaded && shape.IsWidened())
        WidenRows(picture);
    return status;
}

SHORT Load(LoadJob& job) {
    Reader reader(job.file);
    if (!reader.info)
        return kOverBudget;
    const SHORT status = LoadStored(job, reader);
    return status == kLoaded ? TurnUpright(job, OrientationOf(reader)) : status;
}

} // namespace

const Codec kPngCodec = {"PNG", &Sniff, &Load};

} // namespace kel::toolkit
