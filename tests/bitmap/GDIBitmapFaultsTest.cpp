#include "tests/bitmap/Pictures.h"
#include "tests/support/Faults.h"

#include <string>

namespace {

enum After { Unchanged, Empty, Anything };

constexpr Rect kPart(0, 0, 2, 2);

bool CloneAsBlock(const GDIBitmap& picture) {
    void* const block = picture.GetDibClone();
    GlobalFree(block);
    return block != nullptr;
}

const struct {
    const char* name;
    bool (*run)(GDIBitmap& picture, HDC dc);
    After afterFailure;
} kOperations[] = {
    {"CreateBitmap",
     [](GDIBitmap& picture, HDC) {
         return picture.CreateBitmap({3, 3}, 8);
     },
     Empty},
    {"CreateBitmap, screen",
     [](GDIBitmap& picture, HDC) {
         return picture.CreateBitmap({3, 3}, 0);
     },
     Empty},
    {"CreateSysBitmap",
     [](GDIBitmap& picture, HDC) {
         return picture.CreateSysBitmap({3, 3}, 1);
     },
     Empty},
    {"LockPaletteModify", [](GDIBitmap& picture, HDC) { return picture.LockPaletteModify() != nullptr; }, Empty},
    {"Convert", [](GDIBitmap& picture, HDC) { return picture.ConvertSysBitmap2DIB(); }, Unchanged},
    {"Assign",
     [](GDIBitmap& picture, HDC) {
         return picture.AssignBitmap(MemoryPicture({3, 3}, 24));
     },
     Unchanged},
    {"Resize",
     [](GDIBitmap& picture, HDC) {
         return picture.Resize({9, 9});
     },
     Unchanged},
    {"Prescale",
     [](GDIBitmap& p, HDC) {
         return p.Prescale(kPart, IBitmap::BM_Fit, {1, 1}, 9);
     },
     Unchanged},
    {"Crop", [](GDIBitmap& picture, HDC) { return picture.Crop(kPart); }, Anything},
    {"ExtClearSurface", [](GDIBitmap& picture, HDC) { return picture.ExtClearSurface(0xFF); }, Anything},
    {"Invert", [](GDIBitmap& picture, HDC) { return picture.Invert(); }, Anything},
    {"CreateMaskBmp", [](GDIBitmap& picture, HDC) { return !picture.CreateMaskBmp(0xFF).IsEmpty(); }, Unchanged},
    {"GetDibClone", [](GDIBitmap& picture, HDC) { return CloneAsBlock(picture); }, Unchanged},
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
