#include "tests/imaging/Recording.h"

#include "tests/bitmap/Pictures.h"

using namespace kel::test;

TEST_CASE("a picture starts its control once, when it first needs one, and lets go of it in order") {
    Recording recording;
    {
        XPDib picture;
        picture.SetEmpty();
        picture.EnableEffectUndo(true);
        picture.UndoEffect();
        CHECK((picture.IsEmpty() && picture.GetDimension().cx == 0 && picture.GetBitsPerPixel() == 0));
        CHECK(picture.LockSurfaceModify() == nullptr);
        CHECK(recording.Calls() == "");
        recording->Order(kel::recorder::kAnyPosition, 1, S_FALSE); // which is no failure
        CHECK(picture.CreateBitmap({4, 3}, 24));
        CHECK(recording.Calls() == kStart + ", 399 4 3 24 0, 85");
        CHECK(recording->Sinks() == 1);
        picture.SetEmpty();
        CHECK(recording.Calls() == "85, 85, 86 0");
        CHECK(picture.CreateBitmap({4, 3}, 24));
        CHECK(recording.Calls() == "85, 399 4 3 24 0, 85");
    }
    CHECK(recording.Calls() == kStop);
}

TEST_CASE("a setting that fails is thrown with its control, which stays started") {
    const int positions[] = {26, 200, 513, 102, 260};
    for (int nth = 1; nth <= 5; ++nth) {
        Recording recording;
        OpenPicture picture;
        recording->Order(kel::recorder::kAnyPosition, nth, E_NOTIMPL - nth);
        try {
            picture.CreateBitmap({4, 3}, 24);
            FAIL("nothing was thrown");
        } catch (const _com_error& thrown) {
            const auto& failure = dynamic_cast<const kel::ToolkitError&>(thrown);
            CHECK(failure.Error() == E_NOTIMPL - nth);
            CHECK(failure.Interface() != nullptr);
            CHECK(failure.InterfaceId() == kel::toolkit::kControlInterface);
        }
        const std::string last = ", " + std::to_string(positions[nth - 1]) + " ";
        CHECK(recording.Calls().starts_with(kStart.substr(0, kStart.find(last) + last.size() + 1)));
        CHECK(recording->Sinks() == 1);
        CHECK(picture.CreateBitmap({4, 3}, 24));
        CHECK(recording.Calls() == "85, 399 4 3 24 0, 85");
    }
}

namespace {

void CheckWithoutToolkit(const char* why) {
    CAPTURE(why);
    OpenPicture picture;
    CHECK_FALSE(picture.CreateBitmap({4, 3}, 24));
    CHECK_FALSE(picture.AssignBitmap(Painted({4, 3}, 24)));
    const HBITMAP bitmap = CreateBitmap(4, 3, 1, 1, nullptr);
    CHECK_FALSE(picture.SetDDB(bitmap, nullptr));
    DeleteObject(bitmap);
    CHECK(Thrown([&] { picture.LoadBitmapA(u"C:\\none.pic"_w); }) == "X 3");
    CHECK(Thrown([&] { LoadText(picture, "4x3x24"); }) == "X 3");
    CHECK(Thrown([&] { picture.LoadBitmapDeferred(u"C:\\none.pic"_w, nullptr, Rect(), 0); }) == "X 3");
    CHECK(Thrown([&] { ReadStored(picture, std::string("\1\0\0\0", 4)); }) == "S 0: Initializing ImageXpress failed");
    CHECK((picture.IsEmpty() && !picture.IsLoadBitmapPending()));
}

} // namespace

TEST_CASE("without a toolkit pictures stay empty") {
    Recording recording;
    recording->RefuseControls();
    CheckWithoutToolkit("it makes no control");
    recording->Reset();
    // The plain name would find the recorder: there is no second attempt.
    Recording::Register("C:\\no such folder\\ImagXpr5.dll");
    CheckWithoutToolkit("the registered file is missing");
    Recording::Register(KELCORE_TEST_LANGUAGES "/module.dll");
    CheckWithoutToolkit("the registered module has no such function");
    CHECK(recording.Calls() == "");
}

TEST_CASE("a toolkit that is not registered, or by too long a path, is found by its name") {
    for (const std::string& path : {std::string(), std::string(255, 'x')}) {
        Recording recording;
        Recording::Register(path.empty() ? nullptr : path.c_str());
        XPDib picture;
        CHECK(picture.CreateBitmap({4, 3}, 24));
    }
}

TEST_CASE("every failing call of the system ends in a stated failure and leaves nothing behind") {
    const TempFolder folder;
    const String file = folder.Write("a.pic", "9x7x8");
    Recording recording;
    WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [&] {
        XPDib picture;
        const std::string thrown = Thrown([&] {
            picture.LoadBitmapA(file);
            XPDib copy(picture);
            copy.ClearSurface(1);
            copy.Prescale(Rect(0, 0, 2, 2), IBitmap::BM_Center, {1, 1}, 1);
            DibOf(copy);
            ReadStored(copy, StoredOf(picture));
            const HBITMAP bitmap = CreateBitmap(4, 3, 1, 32, nullptr);
            copy.SetDDB(bitmap, nullptr);
            DeleteObject(bitmap);
        });
        CHECK((thrown == "" || *FaultedCall() != 0));
    });
}

TEST_CASE("every failing operation of the toolkit is thrown out of whatever needed it and leaves nothing behind") {
    Recording recording;
    const GDIBitmap canvas = Painted({20, 20}, 24);
    std::string thrown;
    int nth = 0;
    do {
        recording->Reset();
        XPDib picture;
        LoadText(picture, "9x7x24");
        recording->Order(kel::recorder::kAnyPosition, ++nth, E_FAIL);
        thrown = Thrown([&] {
            XPDib copy(picture);
            copy.ClearSurface(1);
            copy.Prescale(Rect(0, 0, 2, 2), IBitmap::BM_Center, {1, 1}, 1);
            copy.AssignBitmap(canvas);
            copy.AlphaShadeBitmap(Rect(0, 0, 9, 7), 0x123456, 99, &picture);
            copy.CombineBitmap(picture, 0x123456);
            GDIBitmap taken(canvas);
            taken.AssignBitmap(picture);
            taken.CreateBitmap(picture, Size(5, 5), 24, IBitmap::BM_Fit, {1, 1}, 1);
            taken.CombineBitmap(picture, 0x123456);
            static_cast<void>(picture.GetPixel(1, 1) + (picture.ContainsColor(1) ? 1U : 0U));
        });
        CAPTURE(nth);
        REQUIRE((thrown == "" || thrown == "E 80004005"));
    } while (thrown != "");
    CHECK(nth > 60);
}
