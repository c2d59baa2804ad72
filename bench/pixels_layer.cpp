// The drawing calls of the layer.

#include "bench/pixels/Drawer.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"

#include <kelcore/bitmap.h>
#include <kelcore/platform.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <stdexcept>

namespace kel::bench {
namespace {

// --- the layer: a context for each picture, on sections that begin with the bottom row, as most do

BITMAPINFO Description(int width, int height, std::size_t bytes) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = static_cast<WORD>(8 * bytes);
    return info;
}

/// Kept until the program ends.
struct Section {
    BITMAPINFO info;
    Byte* bits = nullptr;
    HBITMAP bitmap;
    HDC dc = CreateCompatibleDC(nullptr);

    Section(int width, int height, std::size_t bytes) : info(Description(width, height, bytes)) {
        void* memory = nullptr;
        bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &memory, /*mapping*/ nullptr, 0);
        if (SelectObject(dc, bitmap) == nullptr)
            throw std::runtime_error("no section");
        SetStretchBltMode(dc, COLORONCOLOR);
        bits = static_cast<Byte*>(memory);
    }
};

Section& SourceOf(const Scene& scene) {
    auto* const section = new Section(scene.width, scene.height, scene.sourceBytes);
    for (int y = 0; y < scene.height; ++y)
        std::memcpy(section->bits + scene.SourceRow() * static_cast<std::size_t>(scene.height - 1 - y),
                    scene.source + scene.SourceRow() * static_cast<std::size_t>(y), scene.SourceRow());
    return *section;
}

Section& TargetOf(const Scene& scene) {
    return *new Section(scene.toWidth, scene.toHeight, scene.targetBytes);
}

template <class Draw>
Drawing Prepared(const Scene& scene, Draw draw) {
    Section& source = SourceOf(scene);
    Section& target = TargetOf(scene);
    return {[=, &source, &target] { draw(scene, source, target.dc); }, target.bits};
}

void CopyBits(const Scene& s, const Section& source, HDC to) {
    BitBlt(to, 0, 0, s.toWidth, s.toHeight, source.dc, 0, 0, SRCCOPY);
}

void CopyDib(const Scene& s, const Section& source, HDC to) {
    StretchDIBits(to, 0, 0, s.toWidth, s.toHeight, 0, 0, s.width, s.height, source.bits, &source.info, DIB_RGB_COLORS,
                  SRCCOPY);
}

void Stretch(const Scene& s, const Section& source, HDC to) {
    StretchBlt(to, 0, 0, s.toWidth, s.toHeight, source.dc, 0, 0, s.width, s.height, SRCCOPY);
}

template <BYTE format>
void Blend(const Scene& s, const Section& source, HDC to) {
    AlphaBlend(to, 0, 0, s.toWidth, s.toHeight, source.dc, 0, 0, s.width, s.height,
               {AC_SRC_OVER, 0, static_cast<BYTE>(s.opacity), format});
}

void DrawKeyed(const Scene& s, const Section& source, HDC to) {
    TransparentBlt(to, 0, 0, s.toWidth, s.toHeight, source.dc, 0, 0, s.width, s.height, kKey);
}

Drawing TileByBrush(const Scene& scene) {
    Section& target = TargetOf(scene);
    SelectObject(target.dc, CreatePatternBrush(SourceOf(scene).bitmap));
    return {[=, &target] { PatBlt(target.dc, 0, 0, scene.toWidth, scene.toHeight, PATCOPY); }, target.bits};
}

Drawing TileByMode(const Scene& scene) {
    Section& target = TargetOf(scene);
    auto* const picture = new GDIBitmap;
    if (!picture->CreateBitmap(Size(scene.width, scene.height), static_cast<int>(8 * scene.sourceBytes)))
        throw std::runtime_error("no picture");
    std::memcpy(picture->LockSurfaceModify(), SourceOf(scene).bits,
                scene.SourceRow() * static_cast<std::size_t>(scene.height));
    const Rect whole(0, 0, scene.toWidth, scene.toHeight);
    return {[=, &target] { picture->Draw(target.dc, whole, IBitmap::BM_Tile, XSize<double>(1.0, 1.0)); }, target.bits};
}

const Enter<Drawer> entered[] = {
    Enter<Drawer>{{"kelcore", "copy, BitBlt", 0, [](const Scene& s) { return Prepared(s, CopyBits); }}},
    Enter<Drawer>{{"kelcore", "copy, StretchDIBits", 0, [](const Scene& s) { return Prepared(s, CopyDib); }}},
    Enter<Drawer>{{"kelcore", "stretch", 0, [](const Scene& s) { return Prepared(s, Stretch); }}},
    Enter<Drawer>{{"kelcore", "blend", 0, [](const Scene& s) { return Prepared(s, Blend<0>); }}},
    Enter<Drawer>{{"kelcore", "over", 0, [](const Scene& s) { return Prepared(s, Blend<AC_SRC_ALPHA>); }}},
    Enter<Drawer>{{"kelcore", "transparent", 0, [](const Scene& s) { return Prepared(s, DrawKeyed); }}},
    Enter<Drawer>{{"kelcore", "tile, PatBlt", 0, &TileByBrush}},
    Enter<Drawer>{{"kelcore", "tile, BM_Tile", 0, &TileByMode}},
    Enter<Drawer>{{"limit-BitBlt", "transparent", 0, [](const Scene& s) { return Prepared(s, CopyBits); }}},
};

// --- the works

struct Size2 {
    int width;
    int height;
};

constexpr Size2 kFull{kWidth, kHeight};
constexpr Size2 kSmall{1280, 720};
constexpr Size2 kLarge{3840, 2160};
constexpr Size2 kSquare{kTile, kTile};

struct Work {
    const char* name;
    std::size_t targetBytes;
    Size2 from = kFull;
    Size2 to = kFull;
    int opacity = 255;
    std::size_t sourceBytes = targetBytes;
    bool exact = false; // whether all who do it leave the same pixels: others choose and round otherwise
};

const Work kWorks[] = {
    {"copy, BitBlt 32", 4, kFull, kFull, 255, 4, true},
    {"copy, BitBlt 24", 3, kFull, kFull, 255, 3, true},
    {"copy, StretchDIBits 32", 4, kFull, kFull, 255, 4, true},
    {"copy, StretchDIBits 24", 3, kFull, kFull, 255, 3, true},
    {"stretch to 1280x720 32", 4, kFull, kSmall},
    {"stretch to 1280x720 24", 3, kFull, kSmall},
    {"stretch to 3840x2160 32", 4, kFull, kLarge},
    {"stretch to 3840x2160 24", 3, kFull, kLarge},
    {"blend 40% 32", 4, kFull, kFull, 102},
    {"blend 40% 24", 3, kFull, kFull, 102},
    {"over 32", 4},
    {"over, 32 on 24", 3, kFull, kFull, 255, 4},
    {"transparent 32", 4, kFull, kFull, 255, 4, true},
    {"transparent 24", 3, kFull, kFull, 255, 3, true},
    {"tile, PatBlt 32", 4, kSquare, kFull, 255, 4, true},
    {"tile, PatBlt 24", 3, kSquare, kFull, 255, 3, true},
    {"tile, BM_Tile 32", 4, kSquare, kFull, 255, 4, true},
    {"tile, BM_Tile 24", 3, kSquare, kFull, 255, 3, true},
};

// Pictures begin at a page, as the system's do, and every page of them is there.
Byte* NewPicture(std::size_t bytes) {
    constexpr std::size_t kPage = 4096;
    void* const memory = std::aligned_alloc(kPage, (bytes + kPage - 1) / kPage * kPage);
    if (memory == nullptr)
        throw std::bad_alloc();
    std::memset(memory, 0, bytes);
    return static_cast<Byte*>(memory);
}

bool InDisc(std::size_t x, std::size_t y) {
    const auto dx = static_cast<double>(x) - kWidth / 2.0;
    const auto dy = static_cast<double>(y) - kHeight / 2.0;
    return dx * dx + dy * dy < 400.0 * 400.0;
}

// Random pixels with a disc of the key colour; those of 32 bits have any alpha, and channels below half of it.
const Byte* NewSource(std::size_t bytes) {
    Byte* const picture = NewPicture(bytes * kPixels);
    Random random(53);
    for (std::size_t i = 0; i < kPixels; ++i) {
        const auto alpha = static_cast<unsigned>(random.Below(0x100));
        const Byte pixel[4] = {static_cast<Byte>(random.Below(alpha / 2 + 1)),
                               static_cast<Byte>(random.Below(alpha / 2 + 1)),
                               static_cast<Byte>(random.Below(alpha / 2 + 1)), static_cast<Byte>(alpha)};
        std::memcpy(picture + bytes * i, InDisc(i % kWidth, i / kWidth) ? &kKey : static_cast<const void*>(pixel), 3);
        if (bytes == 4)
            picture[4 * i + 3] = pixel[3];
    }
    return picture;
}

const Byte* Source(std::size_t bytes) {
    static const Byte* pictures[5] = {};
    if (pictures[bytes] == nullptr)
        pictures[bytes] = NewSource(bytes);
    return pictures[bytes];
}

// One for all who do the work.
const Scene& SceneOf(const Work& work) {
    static std::map<const Work*, Scene> scenes;
    const auto found = scenes.find(&work);
    if (found != scenes.end())
        return found->second;
    const auto pixels = static_cast<std::size_t>(work.to.width) * static_cast<std::size_t>(work.to.height);
    const Scene scene = {Source(work.sourceBytes),
                         work.from.width,
                         work.from.height,
                         work.sourceBytes,
                         NewPicture(pixels * work.targetBytes),
                         work.to.width,
                         work.to.height,
                         work.targetBytes,
                         work.opacity};
    return scenes.emplace(&work, scene).first->second;
}

// The layer's rows begin at the bottom: the order of rows is turned back.
std::string ResultOf(const Scene& scene, const Byte* pixels) {
    std::string rows;
    for (int y = 0; y < scene.toHeight; ++y) {
        const int row = pixels == scene.target ? y : scene.toHeight - 1 - y;
        rows.append(reinterpret_cast<const char*>(pixels) + scene.TargetRow() * static_cast<std::size_t>(row),
                    scene.TargetRow());
    }
    return rows;
}

Call CallOf(const Scene& scene, const Drawing& drawing, bool exact) {
    const auto run = [run = drawing.run] {
        run();
        benchmark::ClobberMemory();
    };
    const auto result = [=, &scene] {
        run();
        return ResultOf(scene, drawing.pixels);
    };
    return {run, exact ? std::function<std::string()>(result) : nullptr};
}

void AddMemcpy(const Work& work) {
    AddJob("pixels", "limit-memcpy", work.name, [&work] {
        const Scene& scene = SceneOf(work);
        Byte* const from = NewPicture(scene.Result());
        return CallOf(scene, {[=, &scene] { std::memcpy(scene.target, from, scene.Result()); }, scene.target}, false);
    });
}

// Its limit is the copy without a key.
bool IsKeyed(const Work& work) {
    return std::strncmp(work.name, "transparent", 11) == 0;
}

bool CanDo(const Drawer& drawer, const Work& work) {
    return std::string_view(work.name).substr(0, drawer.kind.size()) == drawer.kind &&
           (drawer.bytes == 0 || drawer.bytes == work.targetBytes);
}

} // namespace

void AddLayerJobs() {
    for (const Work& work : kWorks) {
        for (const Drawer& drawer : Contenders<Drawer>())
            if (CanDo(drawer, work))
                AddJob("pixels", drawer.who, work.name, [=, &work] {
                    const bool compares = work.exact && std::strncmp(drawer.who, "limit", 5) != 0;
                    return CallOf(SceneOf(work), drawer.prepare(SceneOf(work)), compares);
                });
        if (!IsKeyed(work))
            AddMemcpy(work);
    }
}

} // namespace kel::bench
