#include "bench/pictures/PictureFile.h"
#include "bench/support/Areas.h"
#include "bench/support/TempFolder.h"

#include <kelcore/picture.h>

#include <fstream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace kel::bench {
namespace {

struct Measures {
    int width, height;

    Rows In(unsigned char* memory) const { return {width, height, memory}; }
};

Measures MeasuresOf(const PictureFile& kind) {
    const bool large = std::string_view(kind.kind).find("12 MP") != std::string_view::npos;
    return large ? Measures{4000, 3000} : Measures{1920, 1080};
}

// A photograph as a file of a kind, in memory and in a folder.
struct File {
    PictureFile kind;
    Measures measures = MeasuresOf(kind);
    FileBytes bytes = kind.encode(TakePhotograph(measures.width, measures.height, /*seed*/ 61));
    TempFolder folder = {};
    WideString path = OnDrive(folder.Path() / "photograph");

    explicit File(const PictureFile& of) : kind(of) {
        std::ofstream file(folder.Path() / "photograph", std::ios::binary);
        if (!file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size())))
            throw std::runtime_error("no file can be made in the temporary folder");
    }
};

// The jobs of one kind share its file.
std::shared_ptr<const File> FileOf(const PictureFile& kind) {
    static std::map<std::string_view, std::shared_ptr<const File>> files;
    std::shared_ptr<const File>& file = files[kind.kind];
    if (!file)
        file = std::make_shared<const File>(kind);
    return file;
}

void Load(XPDib& picture, const File& file) {
    static const WideString kNone;
    if (file.kind.isRefused)
        picture.LoadBitmapA(file.bytes.data(), static_cast<int>(file.bytes.size()));
    else
        picture.LoadBitmapA(file.path, kNone, kNone, kNone, kNone);
}

std::string PixelsOf(XPDib& picture) {
    const auto bytes =
        static_cast<std::size_t>(picture.GetScanlineSize()) * static_cast<std::size_t>(picture.GetDimension().cy);
    std::string pixels(static_cast<const char*>(picture.LockSurface()), bytes);
    picture.UnlockSurface();
    return pixels;
}

// Everyone makes a new picture each time.
Call OwnCall(const PictureFile& kind) {
    const auto file = FileOf(kind);
    const auto run = [=] {
        XPDib picture;
        Load(picture, *file);
    };
    const auto result = [=] {
        XPDib picture;
        Load(picture, *file);
        return PixelsOf(picture);
    };
    return {run, result};
}

Call PeerCall(const PictureFile& kind) {
    const auto file = FileOf(kind);
    const auto decode = [=] {
        const std::size_t bytes = file->measures.In(nullptr).Bytes();
        auto memory = std::make_unique_for_overwrite<unsigned char[]>(bytes);
        file->kind.decode(file->bytes, file->measures.In(memory.get()));
        return memory;
    };
    const auto result = [=] {
        return std::string(reinterpret_cast<const char*>(decode().get()), file->measures.In(nullptr).Bytes());
    };
    return {[=] { benchmark::DoNotOptimize(decode()); }, result};
}

// Decoding alone: into memory that is there.
Call LimitCall(const PictureFile& kind) {
    const auto file = FileOf(kind);
    const auto memory = std::make_shared<FileBytes>(file->measures.In(nullptr).Bytes());
    return {[=] { file->kind.decode(file->bytes, file->measures.In(memory->data())); }};
}

// --- accessors

std::shared_ptr<XPDib> SmallPicture() {
    auto picture = std::make_shared<XPDib>();
    if (!picture->CreateBitmap(Size(640, 480), 24))
        throw std::runtime_error("the toolkit cannot be started");
    return picture;
}

template <class Ask>
std::function<Call()> Accessor(Ask ask) {
    return [=]() -> Call { return {[=, picture = SmallPicture()] { benchmark::DoNotOptimize(ask(*picture)); }}; };
}

// What any of them does in the end: look into the header of a block.
Call HeaderCall() {
    const std::shared_ptr<void> block(SmallPicture()->GetDibClone(), &GlobalFree);
    return {[=] {
        const auto* const header = static_cast<const BITMAPINFOHEADER*>(GlobalLock(block.get()));
        benchmark::DoNotOptimize(header->biWidth);
        GlobalUnlock(block.get());
    }};
}

void AddAccessorJobs() {
    AddJob("pictures", "kelcore", "GetDimension",
           Accessor([](const XPDib& picture) { return picture.GetDimension(); }));
    AddJob("pictures", "kelcore", "GetBitsPerPixel",
           Accessor([](const XPDib& picture) { return picture.GetBitsPerPixel(); }));
    for (const char* work : {"GetDimension", "GetBitsPerPixel"})
        AddJob("pictures", "limit-lock", work, &HeaderCall);
}

} // namespace

void AddLoadJobs() {
    for (const PictureFile& kind : Contenders<PictureFile>()) {
        const std::string work = std::string("load ") + kind.kind;
        AddJob("pictures", "kelcore", work, [kind] { return OwnCall(kind); });
        AddJob("pictures", kind.who, work, [kind] { return PeerCall(kind); });
        AddJob("pictures", "limit-decode alone", work, [kind] { return LimitCall(kind); });
    }
    AddAccessorJobs();
}

} // namespace kel::bench
