#include "toolkit/Pixels.h"
#include "toolkit/codecs/LibraryCodecs.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <new>

#include <gif_lib.h>

namespace kel::toolkit {
namespace {

int ReadFile(GifFileType* gif, GifByteType* to, int count) {
    Bytes& rest = *static_cast<Bytes*>(gif->UserData);
    const std::size_t given = std::min(rest.size(), static_cast<std::size_t>(count));
    std::memcpy(to, rest.data(), given);
    rest = rest.subspan(given);
    return static_cast<int>(given);
}

struct CloseGif {
    void operator()(GifFileType* gif) const { DGifCloseFile(gif, /*error*/ nullptr); }
};
using Gif = std::unique_ptr<GifFileType, CloseGif>;

/// Reads the extension that comes next. @param transparent receives the transparent index, if it is one that says so.
bool ReadExtension(GifFileType* gif, int& transparent) {
    int code = 0;
    GifByteType* block = nullptr;
    GraphicsControlBlock control;
    if (DGifGetExtension(gif, &code, &block) == GIF_ERROR)
        return false;
    // Blocks begin with their length.
    if (code == GRAPHICS_EXT_FUNC_CODE && block && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK)
        transparent = control.TransparentColor;
    while (block)
        if (DGifGetExtensionNext(gif, &block) == GIF_ERROR)
            return false;
    return true;
}

/// Goes to the first picture and reads its measures.
bool FindPicture(GifFileType* gif, int& transparent) {
    for (;;) {
        GifRecordType record;
        if (DGifGetRecordType(gif, &record) == GIF_ERROR)
            return false;
        if (record == IMAGE_DESC_RECORD_TYPE)
            return DGifGetImageDesc(gif) == GIF_OK;
        if (record != EXTENSION_RECORD_TYPE || !ReadExtension(gif, transparent))
            return false;
    }
}

/// The first picture on its canvas.
struct Shape {
    int width = 0; ///< of the canvas, which holds the picture even where the file says otherwise
    int height = 0;
    GifImageDesc picture = {};
    const ColorMapObject* colours = nullptr;
    int transparent = NO_TRANSPARENT_COLOR;

    bool HasAlpha() const {
        return transparent != NO_TRANSPARENT_COLOR || picture.Width != width || picture.Height != height;
    }
    int Depth() const {
        if (HasAlpha())
            return 32;
        return colours->ColorCount <= 2 ? 1 : colours->ColorCount <= 16 ? 4 : 8;
    }
};

Shape ShapeOf(const GifFileType* gif, int transparent) {
    const GifImageDesc& picture = gif->Image;
    return {std::max(gif->SWidth, picture.Left + picture.Width), std::max(gif->SHeight, picture.Top + picture.Height),
            picture, picture.ColorMap ? picture.ColorMap : gif->SColorMap, transparent};
}

/// The table of the picture; those that it does not reach are black.
void SetColours(const Shape& shape, std::span<RGBQUAD> colours) {
    const auto count = std::min(colours.size(), static_cast<std::size_t>(shape.colours->ColorCount));
    for (std::size_t i = 0; i < count; ++i) {
        const GifColorType& colour = shape.colours->Colors[i];
        colours[i] = {colour.Blue, colour.Green, colour.Red, 0};
    }
}

/// What each index is as a pixel of the picture's depth.
using PixelsOfIndexes = std::array<std::uint32_t, 256>;

PixelsOfIndexes PixelsOf(const Shape& shape) {
    PixelsOfIndexes pixels = {};
    const int depth = shape.Depth();
    if (depth < 32) {
        // An index that the depth has no pixel for becomes 0.
        for (std::size_t i = 0; i < std::size_t{1} << depth; ++i)
            pixels[i] = static_cast<std::uint32_t>(i);
        return pixels;
    }
    std::array<RGBQUAD, 256> colours = {};
    SetColours(shape, colours);
    for (RGBQUAD& colour : colours)
        colour.rgbReserved = 255;
    if (shape.transparent >= 0)
        colours[static_cast<std::size_t>(shape.transparent) & 255] = {};
    std::memcpy(pixels.data(), colours.data(), sizeof pixels);
    return pixels;
}

/// Which rows come in which order: all of them, or every eighth, then those between (GIF89a, appendix E).
struct Pass {
    int first;
    int step;
};
constexpr Pass kAtOnce[] = {{0, 1}};
constexpr Pass kInterlaced[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};

SHORT ReadRows(GifFileType* gif, const Shape& shape, const DibLock& picture) {
    const GifImageDesc& part = shape.picture;
    const std::unique_ptr<GifPixelType[]> line(new (std::nothrow) GifPixelType[static_cast<std::size_t>(part.Width)]);
    if (!line)
        return kOverBudget;
    const PixelsOfIndexes values = PixelsOf(shape);
    for (const Pass& pass : part.Interlace ? std::span<const Pass>(kInterlaced) : std::span<const Pass>(kAtOnce))
        for (int y = pass.first; y < part.Height; y += pass.step) {
            if (DGifGetLine(gif, line.get(), part.Width) == GIF_ERROR)
                return kDamaged;
            WithPixels(shape.Depth(), [&](auto pixels) {
                for (int x = 0; x < part.Width; ++x)
                    pixels.Store(picture.Row(part.Top + y), part.Left + x, values[line[static_cast<std::size_t>(x)]]);
            });
        }
    return kLoaded;
}

bool Sniff(Bytes file) {
    return file.size() >= 6 &&
           (std::memcmp(file.data(), "GIF87a", 6) == 0 || std::memcmp(file.data(), "GIF89a", 6) == 0);
}

SHORT Load(LoadJob& job) {
    Bytes rest = job.file;
    int transparent = NO_TRANSPARENT_COLOR;
    const Gif gif(DGifOpen(&rest, &ReadFile, /*error*/ nullptr));
    if (!gif || !FindPicture(gif.get(), transparent))
        return kDamaged;
    const Shape shape = ShapeOf(gif.get(), transparent);
    if (!shape.colours || shape.picture.Width < 1 || shape.picture.Height < 1)
        return kDamaged;
    const SHORT status = MakePicture(job, shape.width, shape.height, shape.Depth());
    if (status != kLoaded)
        return status;
    const DibLock picture(job.picture);
    if (!picture)
        return kOverBudget;
    SetColours(shape, picture.Colours());
    return ReadRows(gif.get(), shape, picture);
}

} // namespace

const Codec kGifCodec = {"GIF", &Sniff, &Load};

} // namespace kel::toolkit
