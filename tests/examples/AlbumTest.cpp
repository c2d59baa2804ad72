#include "AlbumOutput.h"
#include "Commands.h"
#include "Contents.h"
#include "EffectTable.h"

#include "tests/examples/Failures.h"
#include "tests/support/Blocks.h"

#include <tuple>

using namespace kelalbum;

REGISTER_EXCEPTION_TRANSLATOR(const Misuse& misuse) {
    return misuse.line.c_str();
}

namespace {

using doctest::Contains;

// A BMP file of one colour table and depth 8, or of depth 24.
std::string Bmp(int width, int height, int depth, int seed) {
    const int rowBytes = (width * depth + 31) / 32 * 4;
    const int table = depth == 8 ? 1024 : 0;
    std::string file = "BM";
    const auto append = [&](int bytes, int value) {
        for (int i = 0; i < bytes; ++i)
            file += static_cast<char>(value >> 8 * i);
    };
    for (const int value :
         {54 + table + rowBytes * height, 0, 54 + table, 40, width, height, depth << 16 | 1, 0, 0, 0, 0, 0, 0})
        append(4, value);
    for (int i = 0; i < table; ++i)
        append(1, i % 4 == 3 ? 0 : i * seed);
    for (int i = 0; i < rowBytes * height; ++i)
        append(1, i % rowBytes < width * depth / 8 ? i * seed : 0);
    return file;
}

constexpr char kWhole[] = "Blue.bmp 600x300 24 #0\nblue (2).bmp 600x300 24 #0 again\ntable.bmp 41x7 8 #1\n";

// Two pictures, one of them twice and in a folder below.
struct SamplePictures {
    SamplePictures() {
        folder.Folder("in");
        folder.Folder("in\\inner");
        folder.Write("in\\Blue.bmp", Bmp(600, 300, 24, 3));
        folder.Write("in\\inner\\blue.bmp", Bmp(600, 300, 24, 3));
        folder.Write("in\\table.bmp", Bmp(41, 7, 8, 5));
    }

    int PackAll() const { return Pack({{Album(), folder.Path("in")}, {}}); }
    String Album() const { return folder.Path("a.album"); }

    TempFolder folder;
};

// "blue (2).bmp 600x300 24 #0 again" and a line break: what each entry tells.
std::string Described(const WideString& album) {
    std::string all;
    for (const Listed& entry : ContentsOf(album, "reading"))
        all += StdW2A(entry.name) + ' ' + std::to_string(entry.size.cx) + 'x' + std::to_string(entry.size.cy) + ' ' +
               std::to_string(entry.depth) + " #" + std::to_string(entry.number) + (entry.repeated ? " again\n" : "\n");
    return all;
}

std::string PixelsOf(const XPDib& picture) {
    const HGLOBAL block = picture.GetDibClone();
    const auto pixels = kel::test::BytesOf<std::string>(block);
    GlobalFree(block);
    return pixels;
}

std::string PixelsOf(const WideString& album, const char* name) {
    std::string pixels;
    ReadAlbum(
        album, "reading",
        [&](const Entry& entry) { pixels = entry.name == StdA2W(name) ? PixelsOf(entry.Whole()) : pixels; },
        Keep::Everything);
    return pixels;
}

} // namespace

TEST_CASE("an album holds the pictures of folders, equal ones once, with thumbnails and pixels as they were") {
    const SamplePictures sample;
    CHECK(sample.PackAll() == 0);
    CHECK(Described(sample.Album()) == kWhole);
    CHECK(Verify({{sample.Album()}, {}}) == 0);
    CHECK(List({{sample.Album()}, {}}) == 0);
    std::string thumbnails;
    ReadAlbum(sample.Album(), "reading", [&](const Entry& entry) {
        const Size size = entry.Thumbnail().GetDimension();
        thumbnails += std::to_string(size.cx) + 'x' + std::to_string(size.cy) + ' ';
    });
    CHECK(thumbnails == "256x128 0x0 41x7 ");
    XPDib picture;
    picture.LoadBitmapA(sample.folder.Path("in\\Blue.bmp"));
    CHECK(PixelsOf(sample.Album(), "blue (2).bmp") == PixelsOf(picture));
}

TEST_CASE("what is no picture is left out, and no album is made of nothing, nor in the place of something else") {
    const SamplePictures sample;
    const String text = sample.folder.Write("in\\notes.txt", "no picture"),
                 picture = sample.folder.Path("in\\table.bmp");
    sample.folder.Write("in\\cut.bmp", Bmp(600, 300, 24, 3).substr(0, 1000));
    CHECK(Pack({{sample.Album(), sample.folder.Path("in"), sample.folder.Path("missing")}, {}}) == 1);
    CHECK(Described(sample.Album()) == kWhole);
    CHECK_THROWS_WITH(Pack({{sample.Album(), text}, {}}), Contains("no picture"));
    CHECK(Described(sample.Album()) == kWhole);
    CHECK_THROWS_WITH(Pack({{picture, sample.folder.Path("in\\Blue.bmp")}, {}}), Contains("is no album"));
    CHECK_THROWS_WITH(Effect({{sample.Album(), u"table.bmp"_w, u"flip"_w}, {{"--out", picture}}}),
                      Contains("is no album"));
    CHECK(sample.folder.Read("in\\table.bmp") == Bmp(41, 7, 8, 5));
    for (const String& place : {sample.Album(), picture})
        CHECK_FALSE(File::FileExists(place + u".part"_w));
}

TEST_CASE("an effect changes one entry, also of those that share a picture, in place or in another album") {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"Blue.bmp", "blue (2).bmp", "Blue.bmp 60x30 24 #0\nblue (2).bmp 600x300 24 #1\ntable.bmp 41x7 8 #2\n"},
        {"blue (2).bmp", "Blue.bmp", "Blue.bmp 600x300 24 #0\nblue (2).bmp 60x30 24 #1\ntable.bmp 41x7 8 #2\n"}};
    for (const auto& [name, other, expected] : cases) {
        CAPTURE(name);
        const SamplePictures sample;
        sample.PackAll();
        const String copy = sample.folder.Path("copy");
        CHECK(Effect({{sample.Album(), StdA2W(name), u"resample"_w, u"60x30"_w}, {{"--out", copy}}}) == 0);
        CHECK((Described(copy) == expected && Described(sample.Album()) == kWhole));
        const std::string pixels = PixelsOf(sample.Album(), name);
        for (const bool negative : {true, false}) {
            CHECK(Effect({{sample.Album(), StdA2W(name), u"negate"_w}, {}}) == 0);
            CHECK((PixelsOf(sample.Album(), name) != pixels) == negative);
            CHECK(PixelsOf(sample.Album(), other) == pixels);
        }
        CHECK(Verify({{sample.Album()}, {}}) == 0);
    }
}

TEST_CASE("effects take values of their own kinds") {
    for (const auto& [effect, value] : {std::pair("gamma", "1.5"), {"rotate", "-1e1"}, {"resize", "8x65535"}})
        CHECK_NOTHROW(FindEffect(effect, value));
    const std::tuple<const char*, const char*, const char*> refused[] = {
        {"blur", "", "no effect blur"},  {"flip", "1", "no value"},    {"swirl", "", "a value: DEGREES"},
        {"swirl", "1x", "a value"},      {"mosaic", "1.5", "a value"}, {"mosaic", "40000", "a value"},
        {"resize", "8", "WIDTHxHEIGHT"}, {"resize", "0x8", "a value"}};
    for (const auto& [effect, value, line] : refused)
        CHECK_THROWS_WITH(FindEffect(effect, value), Contains(line));
}

TEST_CASE("pictures come back as PNG files with their pixels, each under a name of its own") {
    const SamplePictures sample;
    sample.PackAll();
    const String out = sample.folder.Path("out");
    CHECK_THROWS_WITH(Extract({{sample.Album(), u"none"_w, out}, {}}), Contains("no picture none"));
    CHECK_FALSE(File::FileExists(out));
    CHECK(Extract({{sample.Album(), u"BLUE (2).bmp"_w, u"table.bmp"_w, u"blue.bmp"_w, out}, {}}) == 0);
    for (const char* name : {"Blue.png", "blue (2).png", "table.png"}) {
        CAPTURE(name);
        CHECK(sample.folder.Read(std::string("out\\") + name).substr(0, 8) == "\x89PNG\r\n\x1A\n");
        try {
            XPDib back;
            back.LoadBitmapA(sample.folder.Path(std::string("out\\") + name));
            CHECK(PixelsOf(back) == PixelsOf(sample.Album(), *name == 't' ? "table.bmp" : "Blue.bmp"));
        } catch (XPDib::XPException code) {
            // Where the toolkit reads no PNG files at all.
            CHECK(code == XPDib::XP_Failed);
        }
    }
    CHECK_THROWS_WITH(Extract({{sample.Album(), out}, {}}), Contains("cannot make"));
}

TEST_CASE("damage is named, and names that leave the folder are refused") {
    const SamplePictures sample;
    sample.PackAll();
    std::string damaged = sample.folder.Read("a.album");
    damaged[9000] ^= 1;
    sample.folder.Write("a.album", damaged);
    for (int (*const command)(const Arguments&) : {List, Verify})
        CHECK_THROWS_WITH(command({{sample.Album()}, {}}), Contains("block 3 at file offset 8192: CRC"));
    AlbumOutput output(sample.Album());
    const Owned<Picture> picture(new Picture);
    Entry entry;
    entry.name = u"..\\x.bmp"_w;
    entry.picture = picture.get();
    output.Add(entry);
    output.Commit();
    CHECK_THROWS_WITH(List({{sample.Album()}, {}}), Contains("which no file can have"));
}

TEST_CASE("a failing platform call leaves the old album or makes a whole one") {
    const SamplePictures sample;
    sample.PackAll();
    const std::string old = sample.folder.Read("a.album");
    kel::test::WithEachCallFailing(ERROR_DISK_FULL, [&] {
        const bool packed = Succeeds([&] { Pack({{sample.Album(), sample.folder.Path("in\\table.bmp")}, {}}); });
        if (!kel::test::FaultIsOver())
            return;
        CHECK_FALSE(File::FileExists(sample.folder.Path("a.album.part")));
        CHECK(Described(sample.Album()) == (packed ? "table.bmp 41x7 8 #0\n" : kWhole));
        sample.folder.Write("a.album", old);
    });
}
