#include "AlbumOutput.h"
#include "Commands.h"
#include "Page.h"
#include "WholeFile.h"

#include "tests/examples/Failures.h"

#include <algorithm>
#include <tuple>
#include <utility>

using namespace kelalbum;

namespace {

constexpr unsigned char kGrey = 77;
constexpr COLORREF kMark = RGB(kGrey, kGrey, kGrey);

Owned<kelalbum::Picture> Plain(const Size& size, int depth, unsigned char bytes) {
    XPDib picture;
    picture.CreateBitmap(size, depth);
    picture.ClearSurface(bytes);
    return Owned<kelalbum::Picture>(new kelalbum::Picture(std::move(picture)));
}

void WriteAlbum(const WideString& path) {
    const auto stored = Plain(Size(40, 30), 24, 0);
    AlbumOutput output(path);
    for (const WideString& name : {u"a.bmp"_w, u"b.bmp"_w}) {
        Entry entry;
        entry.name = name;
        entry.picture = stored.get();
        output.Add(entry);
    }
    output.Commit();
}

Card CardOf(const Size& size, int depth, unsigned char bytes, IBitmap::BM_Mode mode) {
    const auto stored = Plain(size, depth, bytes);
    Entry entry;
    entry.name = u"a name that is too long for the card it stands on"_w;
    entry.picture = stored.get();
    return MakeCard(entry, Page::kPicture, mode);
}

// Which places of the first card's area show the picture: the corner, the left edge, the top edge, the middle.
std::string Shown(const Size& size, IBitmap::BM_Mode mode) {
    Page page(u"title"_w, u"note"_w, 1);
    page.Add(CardOf(size, 24, kGrey, mode), mode);
    constexpr POINT kCorner = {42, 126};
    std::string shown;
    for (const auto& [dx, dy, letter] : {std::tuple(0, 0, 'c'), {0, 60, 'l'}, {90, 0, 't'}, {90, 60, 'm'}})
        shown += page.Picture().GetPixel(kCorner.x + dx, kCorner.y + dy) == kMark ? letter : '-';
    return shown;
}

} // namespace

TEST_CASE("a card shows its picture by the mode of the sheet") {
    constexpr char kWide[] = "-l-m", kTall[] = "--tm", kAll[] = "cltm";
    for (const auto& [mode, wide, tall] : {std::tuple(IBitmap::BM_Fit, kWide, kTall),
                                           {IBitmap::BM_Fill, kAll, kAll},
                                           {IBitmap::BM_Center, kWide, kTall},
                                           {IBitmap::BM_Stretch, kAll, kAll},
                                           {IBitmap::BM_Tile, kAll, kAll}}) {
        CAPTURE(mode);
        CHECK(Shown(Size(400, 100), mode) == wide);
        CHECK(Shown(Size(100, 400), mode) == tall);
        CHECK_NOTHROW(Shown(Size(1, 2000), mode));
    }
}

TEST_CASE("the ground shows through pictures with alpha; a fourth byte of 0 throughout is none") {
    Page page(u""_w, u""_w, 2);
    page.Add(CardOf(Size(180, 120), 32, 128, IBitmap::BM_Fit), IBitmap::BM_Fit);
    page.Add(CardOf(Size(180, 120), 32, 0, IBitmap::BM_Fit), IBitmap::BM_Fit);
    CHECK(page.Picture().GetPixel(44, 128) != page.Picture().GetPixel(52, 128));
    CHECK(page.Picture().GetPixel(44 + 212, 128) == RGB(0, 0, 0));
    CHECK(page.Picture().GetPixel(52 + 212, 128) == RGB(0, 0, 0));
}

TEST_CASE("a page with failing platform calls is drawn as far as it goes, or refused") {
    const Card card = CardOf(Size(400, 100), 32, 128, IBitmap::BM_Tile);
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [&] {
        const bool drawn = Succeeds([&] {
            Page page(card.name, card.details, 1);
            page.Add(card, IBitmap::BM_Tile);
            CHECK(page.Picture().GetDimension().cx == 900);
        });
        CHECK((drawn || kel::test::FaultIsOver()));
    });
}

TEST_CASE("a sheet is as high as its rows, and nothing is written without its mode or its folder") {
    CHECK(Page(u""_w, u""_w, 4).Picture().GetDimension().cy < Page(u""_w, u""_w, 5).Picture().GetDimension().cy);
    const TempFolder folder;
    const WideString out = folder.Path("sheet.png");
    CHECK_THROWS_AS(Sheet({{folder.Path("a.album"), out}, {{"--mode", u"wide"_w}}}), Misuse);
    CHECK_THROWS_AS(Sheet({{folder.Path("a.album"), out}, {}}), Failure);
    CHECK_FALSE(File::FileExists(out));
}

TEST_CASE("a sheet replaces an older one when it is whole, and never its album") {
    const TempFolder folder;
    const WideString album = folder.Path("a.album");
    WriteAlbum(album);
    const std::string bytes = folder.Read("a.album");
    CHECK_THROWS_AS(Sheet({{album, folder.Path("A.album")}, {}}), Failure);
    CHECK(folder.Read("a.album") == bytes);
    folder.Write("sheet.png", "old");
    kel::test::WithEachCallFailing(ERROR_DISK_FULL, [&] {
        const bool replaced = Succeeds([&] { ReplaceWhole(folder.Path("sheet.png"), "new"); });
        if (!kel::test::FaultIsOver())
            return;
        CHECK(folder.Read("sheet.png") == (replaced ? "new" : "old"));
        CHECK_FALSE(File::FileExists(folder.Path("sheet.png.part")));
        folder.Write("sheet.png", "old");
    });
    ReplaceWhole(folder.Path("sheet.png"), "new");
    CHECK(folder.Read("sheet.png") == "new");
}

TEST_CASE("a sheet's heading is the album's name, however its path is written") {
    const TempFolder folder;
    std::string path = StdW2A(folder.Path("a.album"));
    WriteAlbum(StdA2W(path));
    Sheet({{StdA2W(path), folder.Path("one.png")}, {}});
    std::replace(path.begin(), path.end(), '\\', '/');
    Sheet({{StdA2W(path), folder.Path("two.png")}, {{"--mode", u"fit"_w}}});
    CHECK(folder.Read("one.png").substr(0, 8) == "\x89PNG\r\n\x1A\n");
    CHECK(folder.Read("one.png") == folder.Read("two.png"));
}
