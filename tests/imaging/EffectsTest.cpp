#include "tests/imaging/Recording.h"

#include "tests/support/recorder/Dib.h"

using namespace kel::test;
using kel::recorder::PackedDib;

namespace {

const struct {
    bool (*run)(XPDib& picture);
    const char* call;
} kEffects[] = {{[](XPDib& p) { return p.Equalize(); }, "383"},
                {[](XPDib& p) { return p.Emboss(); }, "377"},
                {[](XPDib& p) { return p.Erode(); }, "419"},
                {[](XPDib& p) { return p.Mirror(); }, "375"},
                {[](XPDib& p) { return p.Flip(); }, "374"},
                {[](XPDib& p) { return p.Negate(); }, "376"},
                {[](XPDib& p) { return p.Outline(); }, "382"},
                {[](XPDib& p) { return p.Concave(); }, "407 1"},
                {[](XPDib& p) { return p.Convex(); }, "407 0"},
                {[](XPDib& p) { return p.Pinch(-7); }, "416 -7"},
                {[](XPDib& p) { return p.Gamma(1.5f); }, "403 1.5"},
                {[](XPDib& p) { return p.Solarize(128); }, "405 128"},
                {[](XPDib& p) { return p.Posterize(-32768); }, "406 -32768"},
                {[](XPDib& p) { return p.Swirl(-0.125); }, "414 -0.125"},
                {[](XPDib& p) { return p.Contrast(32767); }, "373 32767"},
                {[](XPDib& p) { return p.Brightness(-1); }, "372 -1"},
                {[](XPDib& p) { return p.Sharpen(2); }, "380 2"},
                {[](XPDib& p) { return p.Soften(3); }, "381 3"},
                {[](XPDib& p) { return p.Mosaic(4); }, "369 4"},
                {[](XPDib& p) { return p.Rotate(22.5); }, "385 22.5"},
                {[](XPDib& p) { return p.Resample(Size(65537, 2)); }, "417 1 2"},
                {[](XPDib& p) { return p.Resize(Size(2, 65535)); }, "386 2 65535"}};

} // namespace

TEST_CASE("an effect changes one copy by one operation, and says what it came to") {
    for (const auto& effect : kEffects) {
        CAPTURE(effect.call);
        Recording recording;
        XPDib empty, picture;
        CHECK_FALSE(effect.run(empty));
        CHECK(recording.Calls() == "");
        LoadText(picture, "4x3x24");
        recording->Reset();
        CHECK(effect.run(picture));
        CHECK(recording.Calls() == "85, 85, " + std::string(effect.call));
        LoadText(picture, "4x3x24");
        XPDib copy(picture);
        CHECK(effect.run(copy));
        CHECK(copy != picture);
        CHECK(DibOf(picture) == PackedDib(4, 3, 24));
        CHECK(DibOf(copy) != PackedDib(4, 3, 24));
        const int position = std::atoi(effect.call);
        recording->Order(position, 1, S_FALSE);
        CHECK_FALSE(effect.run(picture));
        recording->Order(position, 1, E_INVALIDARG);
        CHECK(Thrown([&] { effect.run(picture); }) == "E 80070057");
        XPDib shared(picture);
        recording->RefuseControls();
        CHECK_FALSE(effect.run(shared));
    }
}

TEST_CASE("sides below 1 are refused before anything is touched") {
    Recording recording;
    XPDib picture;
    LoadText(picture, "4x3x24");
    recording.Calls();
    XPDib copy(picture);
    for (const Size& size : {Size(0, 5), Size(5, 0), Size(-1, 5), Size(5, -65535)})
        CHECK_FALSE((copy.Resample(size) || copy.Resize(size)));
    CHECK(recording.Calls() == "");
    CHECK(copy == picture);
}

TEST_CASE("the last effect is undone while the toolkit keeps what was before") {
    Recording recording;
    XPDib picture;
    picture.EnableEffectUndo(true);
    LoadText(picture, "4x3x24");
    CHECK((picture.Negate() && !picture.CanUndoEffect()));
    recording.Calls();
    picture.UndoEffect();
    CHECK(recording.Calls() == "101");
    picture.EnableEffectUndo(true);
    CHECK_FALSE(picture.CanUndoEffect());
    CHECK(recording.Calls() == "102 1, 101, 87");
    const std::string before = DibOf(picture);
    CHECK((picture.Negate() && picture.CanUndoEffect() && DibOf(picture) != before));
    XPDib copy(picture);
    CHECK((copy.Negate() && !copy.CanUndoEffect()));
    recording.Calls();
    picture.UndoEffect();
    CHECK(recording.Calls() == "101, 87, 366");
    CHECK((DibOf(picture) == before && !picture.CanUndoEffect()));
    recording.Calls();
    picture.EnableEffectUndo(false);
    CHECK(recording.Calls() == "102 0");
}
