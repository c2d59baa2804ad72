#include "tests/imaging/Recording.h"

#include "tests/bitmap/Pictures.h"
#include "tests/support/recorder/Dib.h"

#include <kelcore/file.h>

#include <climits>

using namespace kel::test;

TEST_CASE("loading ends as the toolkit says, from files and from memory") {
    constexpr SHORT kByMerit = kel::recorder::Recorder::kByMerit;
    const struct {
        const char* content;
        int position; // that only answers `result`; 0 for none
        HRESULT result;
        SHORT status; // that the toolkit is ordered to come to
        const char* thrown;
        const char* calls; // behind the load itself
    } rows[] = {{"4x3x24", 0, S_OK, kByMerit, "", ", 477, 85"},
                {"4x3x24", 0, S_OK, -2, "X 1", ", 477"},
                {"4x3x24", 0, S_OK, 2, "X 3", ", 477"},
                {"no picture", 0, S_OK, kByMerit, "X 3", ", 477"},
                {"no picture", 0, S_OK, 0, "X 3", ", 477, 85"},
                {"4x3x24", 60, E_FAIL, 0, "E 80004005", ""},
                {"4x3x24", 477, E_NOTIMPL, 0, "E 80004001", nullptr}};
    const TempFolder folder;
    for (const auto& row : rows) {
        CAPTURE(&row - rows);
        for (const bool fromFile : {true, false}) {
            const String file = folder.Write("some name.pic", row.content);
            Recording recording;
            OpenPicture picture;
            CHECK(picture.CreateBitmap({1, 1}, 8));
            recording.Calls();
            if (row.position != 0)
                recording->Order(!fromFile && row.position == 60 ? 511 : row.position, 1, row.result);
            recording->OrderStatus(row.status);
            CHECK(Thrown([&] { fromFile ? void(picture.LoadBitmapA(file)) : LoadText(picture, row.content); }) ==
                  row.thrown);
            const std::string load =
                fromFile ? "60 " + StdW2A(File::GetShortPath(file)) : "511 " + std::to_string(std::strlen(row.content));
            const std::string emptying = fromFile ? "" : "85, 85, 86 0, ";
            const std::string calls = recording.Calls();
            CHECK(calls.substr(0, calls.find(", 1 AddRef")) ==
                  emptying + "477" + (row.calls ? ", " + load + row.calls : ""));
            CHECK((picture.GetFilename() == u"some name.pic"_w) == (fromFile && *row.thrown == 0));
        }
    }
}

TEST_CASE("GIF and LZW files are refused before the toolkit is touched; memory is not looked at") {
    const std::string files[] = {"GIF", "GIF89a",
                                 std::string("II*\0\x08\0\0\0\1\0\x03\1\3\0\1\0\0\0\5\0\0\0\0\0\0\0", 26)};
    const TempFolder folder;
    Recording recording;
    for (const std::string& file : files) {
        recording->Reset();
        XPDib picture;
        CHECK(Thrown([&] { picture.LoadBitmapA(folder.Write("a.pic", file)); }) == (file == "GIF" ? "X 3" : "X 0"));
        CHECK((recording.Calls() == "") == (file != "GIF"));
        CHECK(Thrown([&] { LoadText(picture, file); }) == "X 3");
    }
    XPDib picture;
    picture.LoadBitmapA(folder.Write("b.pic", "4x3x24"));
    CHECK(Thrown([&] { picture.LoadBitmapA(folder.Write("a.pic", files[1])); }) == "X 0");
    CHECK((!picture.IsEmpty() && picture.GetFilename() == u"b.pic"_w));
}

TEST_CASE("no memory is no source") {
    Recording recording;
    XPDib picture;
    const std::pair<const void*, int> sources[] = {{nullptr, 10}, {&picture, 0}, {&picture, -1}, {&picture, INT_MIN}};
    for (const auto& [data, length] : sources)
        CHECK(Thrown([&, from = data, count = length] { picture.LoadBitmapA(from, count); }) == "X 2");
    CHECK(recording.Calls() == "");
}

TEST_CASE("loading into a shared picture leaves the others theirs, also when it fails") {
    const TempFolder folder;
    const String good = folder.Write("a.pic", "4x3x24"), bad = folder.Write("b.pic", "no picture");
    Recording recording;
    XPDib picture;
    picture.LoadBitmapA(good);
    recording.Calls();
    XPDib fromFile(picture), fromMemory(picture), blank(picture);
    CHECK(Thrown([&] { fromFile.LoadBitmapA(bad); }) == "X 3");
    CHECK(Thrown([&] { LoadText(fromMemory, "no picture"); }) == "X 3");
    CHECK_FALSE(blank.CreateBitmap({0, 5}, 24));
    CHECK((fromFile.IsEmpty() && fromMemory.IsEmpty() && blank.IsEmpty()));
    CHECK((fromFile.GetFilename().empty() && picture.GetFilename() == u"a.pic"_w));
    CHECK(DibOf(picture) == kel::recorder::PackedDib(4, 3, 24));
    // A record that stays keeps its name, but for a load from a file.
    LoadText(picture, "2x2x8");
    CHECK((picture.CreateBitmap({1, 1}, 1) && picture.GetFilename() == u"a.pic"_w));
    CHECK(Thrown([&] { picture.LoadBitmapA(bad); }) == "X 3");
    CHECK(picture.GetFilename().empty());
}

TEST_CASE("blank pictures have sides of 16 bits") {
    const struct {
        Size size;
        bool made;
        const char* calls;
    } rows[] = {{{70000, 3}, true, "85, 85, 86 0, 399 4464 3 1 0, 85"},
                {{3, 0}, false, "85, 85, 86 0"},
                {{-3, 1}, false, "85, 85, 86 0"}};
    Recording recording;
    for (const auto& row : rows) {
        XPDib picture;
        LoadText(picture, "4x3x24");
        recording->Reset();
        CHECK(picture.CreateBitmap(row.size, 1) == row.made);
        CHECK(recording.Calls().find(row.calls) == 0);
        CHECK(picture.IsEmpty() != row.made);
    }
}

TEST_CASE("bitmaps of the system are taken at the next depth there is") {
    Recording recording;
    const int depths[][2] = {{1, 1}, {4, 4}, {8, 8}, {16, 24}, {24, 24}, {32, 24}};
    for (const auto& [system, own] : depths) {
        CAPTURE(system);
        GDIBitmap source;
        REQUIRE(source.CreateBitmap({5, 3}, system));
        if (system <= 8)
            source.LockPaletteModify()[1] = {200, 100, 50, 0};
        static_cast<unsigned char*>(source.LockSurfaceModify())[0] = 0x91;
        XPDib picture;
        recording->Reset();
        CHECK(picture.SetDDB(source.GetHandle(), nullptr));
        CHECK(recording.Calls() == kStart + ", 86 5x3x" + std::to_string(own));
        if (system != 16)
            CheckPixels(picture, PixelsOf(source));
        recording->Reset();
        CHECK_FALSE(picture.SetDDB(nullptr, nullptr));
        CHECK_FALSE(picture.SetDDB(static_cast<HBITMAP>(GetStockObject(BLACK_BRUSH)), nullptr));
        CHECK((recording.Calls() == "" && !picture.IsEmpty()));
    }
}

TEST_CASE("a picture is replaced by a smaller one when the target is small enough") {
    const struct {
        const char* picture;
        Rect target;
        IBitmap::BM_Mode mode;
        XSize<double> scale;
        double limit;
        bool result;
        const char* resampled; // "" for not
    } rows[] = {{"100x100x8", {0, 0, 50, 50}, IBitmap::BM_Stretch, {1, 1}, 0.9, true, "417 50 50"},
                {"100x100x8", {0, 0, 100, 100}, IBitmap::BM_Stretch, {1, 1}, 0.9, true, ""},
                {"100x100x8", {0, 0, 199, 100}, IBitmap::BM_Stretch, {1, 1}, 1.5, true, "417 199 100"},
                {"100x100x8", {0, 0, 99, 99}, IBitmap::BM_Stretch, {1, 1}, 0, true, ""},
                {"100x100x8", {INT_MIN, INT_MIN, INT_MAX, INT_MAX}, IBitmap::BM_Stretch, {1, 1}, 9, true, ""},
                {"200x100x8", {0, 0, 100, 100}, IBitmap::BM_Fit, {1, 1}, 0.9, true, "417 100 50"},
                {"100x-200x8", {5, 5, 105, 105}, IBitmap::BM_Fit, {1, 1}, 0.9, true, "417 50 100"},
                {"200x100x8", {0, 0, 100, 100}, IBitmap::BM_Fit, {1, 2}, 0.9, true, "417 100 100"},
                {"100x100x8", {0, 0, 95, 300}, IBitmap::BM_Fit, {1, 1}, 0.9, true, ""},
                {"100x100x8", {0, 0, 94, 300}, IBitmap::BM_Fit, {1, 1}, 0.9, true, "417 94 94"},
                {"3x2x8", {0, 0, 1, 1}, IBitmap::BM_Fit, {1, 1}, 0.9, true, "417 1 1"},
                {"100x100x8", {9, 0, 9, 50}, IBitmap::BM_Fit, {1, 1}, 0.9, false, ""},
                {"100x100x8", {0, 9, 50, 8}, IBitmap::BM_Stretch, {1, 1}, 0.9, false, ""},
                {"100x100x8", {0, 0, 50, 50}, IBitmap::BM_Fit, {0, 1}, 0.9, false, ""},
                {"100x100x8", {0, 0, 50, 50}, IBitmap::BM_Stretch, {1, -1}, 0.9, false, ""}};
    Recording recording;
    for (const auto& row : rows) {
        CAPTURE(row.picture);
        CAPTURE(row.resampled);
        XPDib picture, copy;
        LoadText(picture, row.picture);
        recording->Reset();
        CHECK(picture.Prescale(row.target, row.mode, row.scale, row.limit) == row.result);
        CHECK(recording.Calls() == (*row.resampled ? "85, 85, " : "85, 85") + std::string(row.resampled));
    }
}

TEST_CASE("for the other modes a picture is replaced by its rendering, and copies keep theirs") {
    for (const IBitmap::BM_Mode mode : {IBitmap::BM_Fill, IBitmap::BM_Center, IBitmap::BM_Tile}) {
        CAPTURE(mode);
        Recording recording;
        const GDIBitmap source = Painted({8, 8}, 24);
        XPDib picture;
        REQUIRE(picture.AssignBitmap(source));
        const XPDib copy(picture);
        const GDIBitmap expected = GDIBitmap::CreatePrescaledBmp(source, Rect(0, 0, 4, 4), mode, {0.5, 0.5}, 1);
        REQUIRE_FALSE(expected.IsEmpty());
        CHECK(picture.Prescale(Rect(0, 0, 4, 4), mode, {0.5, 0.5}, 1));
        CheckPixels(picture, PixelsOf(expected));
        CheckPixels(copy, PixelsOf(source));
    }
}
