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

using Colours = std::array<RGBQUAD, 256>;

/// The table of the picture; indexes that it does not reach are black.
Colours ColoursOf(const Shape& shape) {
    Colours colours = {};
    for (int i = 0; i < shape.colours->ColorCount; ++i) {
        const GifColorType& colour = shape.colours->Colors[i];
        colours[static_cast<std::size_t>(i)] = {colour.Blue, colour.Green, colour.Red, 0};
    }
    return colours;
}

/// Rows of indexes as the picture's depth has them, from its column on.
class PutIndexes {
public:
    PutIndexes(const Shape& shape, const Colours& colours)
        : m_depth(shape.Depth()), m_left(static_cast<std::size_t>(shape.picture.Left)), m_pixels(colours) {
        for (RGBQUAD& pixel : m_pixels)
            pixel.rgbReserved = 255;
        if (shape.transparent >= 0)
            m_pixels[static_cast<std::size_t>(shape.transparent) & 255] = {};
    }

    void operator()(const std::span<const GifPixelType> indexes, BYTE* row) const {
        if (m_depth == 8)
            std::ranges::copy(indexes, row);
        else if (m_depth == 32)
            PutPixels(indexes, row + m_left * sizeof(RGBQUAD));
        else
            Pack(indexes, row);
    }

private:
    void PutPixels(const std::span<const GifPixelType> indexes, BYTE* to) const {
        for (const GifPixelType index : indexes) {
            std::memcpy(to, &m_pixels[index], sizeof(RGBQUAD));
            to += sizeof(RGBQUAD);
        }
    }

    /// An index that the table does not reach becomes 0.
    void Pack(const std::span<const GifPixelType> indexes, BYTE* row) const {
        const auto depth = static_cast<std::size_t>(m_depth);
        for (std::size_t x = 0; x < indexes.size(); ++x) {
            const int index = indexes[x] >> depth == 0 ? indexes[x] : 0;
            row[x * depth / 8] = static_cast<BYTE>(row[x * depth / 8] | index << (8 - depth - x * depth % 8));
        }
    }

    const int m_depth;
    const std::size_t m_left;
    Colours m_pixels;
};

/// Which rows come in which order: all of them, or every eighth, then those between (GIF89a, appendix E).
struct Pass {
    int first;
    int step;
};
constexpr Pass kAtOnce[] = {{0, 1}};
constexpr Pass kInterlaced[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};

SHORT ReadRows(GifFileType* gif, const Shape& shape, const PutIndexes& put, const DibLock& picture) {
    const auto width = static_cast<std::size_t>(shape.picture.Width);
    const std::unique_ptr<GifPixelType[]> line(new (std::nothrow) GifPixelType[width]);
    if (!line)
        return kOverBudget;
    for (const Pass& pass :
         shape.picture.Interlace ? std::span<const Pass>(kInterlaced) : std::span<const Pass>(kAtOnce))
        for (int y = pass.first; y < shape.picture.Height; y += pass.step) {
            if (DGifGetLine(gif, line.get(), shape.picture.Width) == GIF_ERROR)
                return kDamaged;
            put({line.get(), width}, picture.Row(shape.picture.Top + y));
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
    const Colours colours = ColoursOf(shape);
    std::copy_n(colours.begin(), picture.Colours().size(), picture.Colours().begin());
    return ReadRows(gif.get(), shape, PutIndexes(shape, colours), picture);
}

} // namespace

const Codec kGifCodec = {"GIF", &Sniff, &Load};

} // namespace kel::toolkit
