#include "tests/bitmap/Pictures.h"
#include "tests/support/Faults.h"

#include <string>

namespace {

enum After { Unchanged, Empty, Anything };

constexpr Rect kPart(0, 0, 2, 2);
const XSize<double> kAsItIs(1, 1);

bool CloneAsBlock(const GDIBitmap& picture) {
    void* const block = picture.GetDibClone();
    GlobalFree(block);
    return block != nullptr;
}

const struct {
    const char* name;
    bool (*run)(GDIBitmap& p, HDC dc);
    After afterFailure;
} kOperations[] = {
    {"CreateBitmap", [](GDIBitmap& p, HDC) { return p.CreateBitmap(Size(3, 3), 8); }, Empty},
    {"CreateBitmap, screen", [](GDIBitmap& p, HDC) { return p.CreateBitmap(Size(3, 3), 0); }, Empty},
    {"CreateSysBitmap", [](GDIBitmap& p, HDC) { return p.CreateSysBitmap(Size(3, 3), 1); }, Empty},
    {"LockPaletteModify", [](GDIBitmap& p, HDC) { return p.LockPaletteModify() != nullptr; }, Empty},
    {"Convert", [](GDIBitmap& p, HDC) { return p.ConvertSysBitmap2DIB(); }, Unchanged},
    {"Assign", [](GDIBitmap& p, HDC) { return p.AssignBitmap(MemoryPicture(Size(3, 3), 24)); }, Unchanged},
    {"Resize", [](GDIBitmap& p, HDC) { return p.Resize(Size(9, 9)); }, Unchanged},
    {"Prescale", [](GDIBitmap& p, HDC) { return p.Prescale(kPart, IBitmap::BM_Fit, kAsItIs, 9); }, Unchanged},
    {"Crop", [](GDIBitmap& p, HDC) { return p.Crop(kPart); }, Anything},
    {"ExtClearSurface", [](GDIBitmap& p, HDC) { return p.ExtClearSurface(0xFF); }, Anything},
    {"Invert", [](GDIBitmap& p, HDC) { return p.Invert(); }, Anything},
    {"CreateMaskBmp", [](GDIBitmap& p, HDC) { return !p.CreateMaskBmp(0xFF).IsEmpty(); }, Unchanged},
    {"GetDibClone", [](GDIBitmap& p, HDC) { return CloneAsBlock(p); }, Unchanged},
    {"copy", [](GDIBitmap& p, HDC) { return !GDIBitmap(p.GetHandle(), kPart).IsEmpty(); }, Unchanged},
    {"Draw", [](GDIBitmap& p, HDC dc) { return p.Draw(dc, kPart, kPart, SRCCOPY); }, Unchanged},
    {"TransparentDraw", [](GDIBitmap& p, HDC dc) { return p.TransparentDraw(dc, kPart, kPart, 0xFF); }, Unchanged},
    {"AlphaDraw", [](GDIBitmap& p, HDC dc) { return p.AlphaDraw(dc, kPart, kPart, 0.5, false); }, Unchanged}};

} // namespace

TEST_CASE("a failing call of the system leaves every picture as stated, and copies untouched") {
    GDIBitmap indexed;
    REQUIRE(indexed.CreateBitmap({4, 4}, 8));
    const GDIBitmap rgb = Painted({4, 4}, 32);
    const GDIBitmap device = OnDevice(rgb);
    for (const GDIBitmap* const original : {static_cast<const GDIBitmap*>(&indexed), &rgb, &device}) {
        for (const auto& operation : kOperations) {
            const std::string name = operation.name;
            CAPTURE(name);
            CAPTURE(original->GetBitsPerPixel());
            kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [&] {
                const HDC dc = CreateCompatibleDC(nullptr);
                GDIBitmap picture(*original);
                const bool done = operation.run(picture, dc);
                DeleteDC(dc);
                const std::string call = kel::test::FaultedCall();
                CAPTURE(call);
                CHECK((done || !call.empty()));
                if (!done && operation.afterFailure != Anything)
                    CHECK((operation.afterFailure == Empty ? picture.IsEmpty() : picture == *original));
            });
        }
    }
    CheckPixels(rgb, PixelsOf(Painted({4, 4}, 32)));
}

TEST_CASE("drawing nothing asks nothing of the system") {
    GDIBitmap indexed;
    REQUIRE(indexed.CreateBitmap({4, 4}, 8));
    const std::pair<Rect, XSize<double>> nothing[] = {{kPart, {0, 1}}, {{5, 0, 5, 9}, {1, 1}}};
    for (const auto& [target, scale] : nothing) {
        kel::test::ArmFault(1, ERROR_NOT_ENOUGH_MEMORY);
        CHECK(indexed.Draw(nullptr, target, IBitmap::BM_Tile, scale));
        CHECK(indexed.TransparentDraw(nullptr, target, 0xFF, IBitmap::BM_Tile, scale));
        CHECK(indexed.AlphaDraw(nullptr, target, 0.5, false, IBitmap::BM_Tile, scale));
        CHECK_FALSE(kel::test::DisarmFault());
    }
}
