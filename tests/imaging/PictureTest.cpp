#include "tests/imaging/Recording.h"

#include "tests/bitmap/Pictures.h"
#include "tests/support/recorder/Dib.h"

using namespace kel::test;
using kel::recorder::PackedDib;

TEST_CASE("copies share a picture until one of them changes it") {
    const TempFolder folder;
    const String file = folder.Write("a.pic", "4x3x8");
    Recording recording;
    XPDib first;
    first.LoadBitmapA(file);
    recording.Calls();
    XPDib second(first), third;
    third = second;
    third = *&third;
    IBitmap* const clone = first.GetClone();
    CHECK((first == second && first == third && clone->IsEqual(first) && first.IsEqual(*clone)));
    CHECK(clone->Release() == 0);
    CHECK(recording.Calls() == "");

    static_cast<unsigned char*>(second.LockSurfaceModify())[0] ^= 0xFF;
    second.UnlockSurface();
    CHECK(recording.Calls() == "85, connect 2, 2 AddRef, 2: 26 2, 2: 200 0, 2: 513 0, 2: 102 0, 2: 260 0, 401, "
                               "2: 86 4x3x8, 2: 85, 2: 85, 2: 85, 2: 85, 2: 85, 2: 85");
    CHECK((first != second && !first.IsEqual(second) && third == first));
    CHECK(DibOf(first) == PackedDib(4, 3, 8));
    CHECK(DibOf(second).size() == DibOf(first).size());
    CHECK(DibOf(second) != DibOf(first));
    CHECK((second.GetFilename().empty() && first.GetFilename() == u"a.pic"_w));

    recording.Calls();
    third.SetEmpty();
    CHECK(recording.Calls() == "85, 85");
    CHECK((third.IsEmpty() && !first.IsEmpty()));
    CHECK_FALSE(first.IsEqual(GDIBitmap()));
}

TEST_CASE("a copy that cannot get a control of its own is empty, and the others keep the picture") {
    Recording recording;
    XPDib first;
    LoadText(first, "4x3x24");
    OpenPicture second;
    static_cast<XPDib&>(second) = first;
    recording->RefuseControls();
    CHECK_FALSE(second.Detach());
    CHECK((second.IsEmpty() && !first.IsEmpty()));
    CHECK(second.Detach());
}

TEST_CASE("other pictures are taken as a copy of their bitmap") {
    Recording recording;
    const GDIBitmap source = Painted({5, 2}, 24);
    XPDib picture, copy;
    CHECK_FALSE(picture.AssignBitmap(GDIBitmap()));
    CHECK(picture.AssignBitmap(source));
    CHECK(recording.Calls() == kStart + ", 86 5x2x24");
    CheckPixels(picture, PixelsOf(source));
    CHECK((copy.AssignBitmap(picture) && copy == picture));
    CHECK(recording.Calls().starts_with("85, "));
    // A block that the toolkit refuses stays the picture's own to free.
    XPDib refused;
    recording->Order(86, 1, E_INVALIDARG);
    CHECK(Thrown([&] { refused.AssignBitmap(source); }) == "E 80070057");
}

TEST_CASE("accessors read the toolkit's own block, by the calls that are written down") {
    const struct {
        const char* name;
        bool (*run)(const XPDib& picture);
        const char* calls;
    } rows[] = {{"IsEmpty", [](const XPDib& p) { return !p.IsEmpty(); }, "85, 85"},
                {"GetDimension", [](const XPDib& p) { return p.GetDimension().cy == 3; }, "85"},
                {"GetBitsPerPixel", [](const XPDib& p) { return p.GetBitsPerPixel() == 4; }, "85"},
                {"GetDibClone", [](const XPDib& p) { return !GlobalFree(p.GetDibClone()); }, "85, 85, 401"},
                {"LockSurface", [](const XPDib& p) { return p.LockSurface() != nullptr; }, "85, 85, 85"},
                {"UnlockSurface", [](const XPDib& p) { return p.UnlockSurface(), true; }, "85, 85, 85"},
                {"LockPalette", [](const XPDib& p) { return p.LockPalette() != nullptr; }, "85, 85, 85"},
                {"UnlockPalette", [](const XPDib& p) { return p.UnlockPalette(), true; }, "85, 85, 85"},
                {"HasPalette", [](const XPDib& p) { return p.HasPalette(); }, "85, 85, 85"}};
    Recording recording;
    XPDib picture;
    LoadText(picture, "5x-3x4");
    for (const auto& row : rows) {
        const std::string name = row.name;
        CAPTURE(name);
        recording->Reset();
        CHECK(row.run(picture));
        CHECK(recording.Calls() == row.calls);
        recording->Order(85, 1, E_FAIL);
        CHECK(Thrown([&] { row.run(picture); }) == "E 80004005");
    }
}

TEST_CASE("pictures of every depth and direction are seen as their bytes say") {
    Recording recording;
    for (const int depth : {1, 4, 8, 24, 32}) {
        for (const int height : {3, -3}) {
            CAPTURE(depth);
            const std::string dib = PackedDib(5, height, depth);
            const std::size_t table = depth <= 8 ? std::size_t{4} << depth : 0;
            XPDib picture;
            LoadText(picture, "DIB" + dib);
            CHECK((picture.GetDimension().cx == 5 && picture.GetDimension().cy == 3));
            CHECK(picture.GetBitsPerPixel() == depth);
            CHECK(picture.GetNumPaletteEntries() == static_cast<int>(table / 4));
            CHECK(std::memcmp(picture.LockPaletteModify(), dib.data() + 40, table) == 0);
            picture.UnlockPalette();
            const std::vector<unsigned char> bytes = BytesOf(picture);
            picture.UnlockSurface();
            CHECK(std::string(bytes.begin(), bytes.end()) == dib.substr(40 + table));
            CHECK(picture.ClearSurface(0xA5));
            CHECK(DibOf(picture) == dib.substr(0, 40 + table) + std::string(bytes.size(), '\xA5'));
        }
    }
}

TEST_CASE("behind a longer header the pixels are found, and the colours looked for at byte 40") {
    Recording recording;
    std::string dib = PackedDib(5, 3, 8);
    dib.insert(40, 84, 'h');
    dib[0] = 124;
    XPDib picture;
    LoadText(picture, "DIB" + dib);
    CHECK(std::memcmp(picture.LockPalette(), "hhhh", 4) == 0);
    CHECK(std::memcmp(picture.LockSurface(), dib.data() + 124 + 1024, 8 * 3) == 0);
    picture.UnlockSurface();
    picture.UnlockPalette();
}

TEST_CASE("a picture without a width or a height is empty") {
    Recording recording;
    XPDib picture;
    LoadText(picture, "0x3x24");
    CHECK((picture.IsEmpty() && !picture.LockSurface() && !picture.GetDibClone() && picture.GetBitsPerPixel() == 24));
}

TEST_CASE("a picture is drawn like the bitmap that it holds") {
    Recording recording;
    const GDIBitmap source = Painted({6, 4}, 24);
    XPDib picture;
    REQUIRE(picture.AssignBitmap(source));
    GDIBitmap expected = Painted({9, 9}, 24), drawn(expected);
    const auto draw = [](GDIBitmap& canvas, const IBitmap& what) {
        const HDC dc = CreateCompatibleDC(nullptr);
        const HGDIOBJ before = SelectObject(dc, canvas.GetHandle(true));
        CHECK(what.Draw(dc, Rect(1, 1, 8, 5), IBitmap::BM_Stretch, {1, 1}));
        CHECK(what.Draw(dc, Rect(2, 6, 5, 8), Rect(1, 1, 4, 3), SRCINVERT));
        SelectObject(dc, before);
        DeleteDC(dc);
    };
    draw(expected, source);
    draw(drawn, picture);
    CheckPixels(drawn, PixelsOf(expected));
    picture.SetEmpty();
    CHECK_FALSE(picture.Draw(nullptr, Rect(1, 1, 8, 5), IBitmap::BM_Stretch, {1, 1}));
    CHECK_FALSE(picture.Draw(nullptr, Rect(1, 1, 8, 5), Rect(0, 0, 6, 4), SRCCOPY));
}
