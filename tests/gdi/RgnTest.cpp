#include "tests/gdi/Canvas.h"

#include <functional>

namespace {

const RECT kRect = {3, 4, 43, 34};
POINT g_points[] = {{0, 0}, {40, 0}, {20, 30}, {50, 50}, {90, 50}, {70, 90}};
int g_counts[] = {3, 3};
const XFORM kTwice = {2, 0, 0, 2, 5, 6};

// A closed figure in the path of a context.
struct Path {
    Path() {
        BeginPath(dc.m_hDC);
        Rectangle(dc.m_hDC, 1, 2, 30, 40);
        EndPath(dc.m_hDC);
    }
    DC dc{CreateCompatibleDC(nullptr), nullptr};
};

std::vector<char> DataOf(HRGN region) {
    std::vector<char> data(GetRegionData(region, 0, nullptr));
    GetRegionData(region, static_cast<DWORD>(data.size()), reinterpret_cast<RGNDATA*>(data.data()));
    return data;
}

} // namespace

TEST_CASE("every way to create a region replaces what was held, and fails with nothing held") {
    const Rgn frame(CreateRectRgn(0, 0, 9, 9)), inner(CreateRectRgn(3, 3, 6, 6));
    CombineRgn(frame, frame, inner, RGN_DIFF);
    const std::vector<char> bytes = DataOf(frame);
    const auto size = static_cast<int>(bytes.size());
    const auto& data = *reinterpret_cast<const RGNDATA*>(bytes.data());
    const struct {
        const char* name;
        std::function<bool(Rgn&)> create;
        HRGN expected;
    } creations[] = {
        {"elliptic", [](Rgn& r) { return r.CreateEllipticRgn(3, 4, 43, 34); }, CreateEllipticRgnIndirect(&kRect)},
        {"elliptic's", [](Rgn& r) { return r.CreateEllipticRgnIndirect(kRect); }, CreateEllipticRgn(3, 4, 43, 34)},
        {"path", [](Rgn& r) { return r.CreateFromPath(Path().dc.m_hDC); }, PathToRegion(Path().dc.m_hDC)},
        {"polygon", [](Rgn& r) { return r.CreatePolygonRgn(g_points, 6, WINDING); },
         CreatePolygonRgn(g_points, 6, WINDING)},
        {"polygons", [](Rgn& r) { return r.CreatePolyPolygonRgn(g_points, *g_counts, 2, ALTERNATE); },
         CreatePolyPolygonRgn(g_points, g_counts, 2, ALTERNATE)},
        {"rectangle", [](Rgn& r) { return r.CreateRectRgn(3, 4, 43, 34); }, CreateRectRgnIndirect(&kRect)},
        {"rectangle's", [](Rgn& r) { return r.CreateRectRgn(kRect); }, CreateRectRgn(3, 4, 43, 34)},
        {"round", [](Rgn& r) { return r.CreateRoundRectRgn(3, 4, 43, 34, 12, 8); },
         CreateRoundRectRgn(3, 4, 43, 34, 12, 8)},
        {"data", [&](Rgn& r) { return r.ExtCreateRegion(kTwice, size, data); },
         ExtCreateRegion(&kTwice, static_cast<DWORD>(size), &data)},
    };
    for (const auto& creation : creations) {
        CAPTURE(std::string(creation.name));
        const Rgn expected(creation.expected);
        kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [&] {
            const HRGN before = CreateRectRgn(0, 0, 1, 1);
            Rgn region(before);
            const bool created = creation.create(region);
            CHECK((created || kel::test::HasCallFailed()));
            CHECK(region.HasHRgn() == created);
            CHECK(GetObjectType(before) == 0);
            if (created && kel::test::FaultIsOver())
                CHECK((region.EqualRgn(expected) && DataOf(region).size() > sizeof(RGNDATAHEADER)));
        });
    }
}

TEST_CASE("copies hold one region, which all but one must give up") {
    const HRGN region = CreateRectRgn(0, 0, 5, 5), left = CreateRectRgn(0, 0, 1, 1);
    {
        Rgn first(region), copy(first), assigned(left);
        assigned = first;
        CHECK((copy == region && assigned == region && GetObjectType(left) == OBJ_REGION));
        CHECK((copy.Detach() == region && assigned.Detach() == region && !copy.HasHRgn()));
        CHECK(copy.Attach(left));
        CHECK_FALSE(copy.Attach(nullptr));
        CHECK(GetObjectType(left) == 0);
    }
    CHECK(GetObjectType(region) == 0);
}

TEST_CASE("regions are combined, moved, asked and read") {
    Rgn region(CreateRectRgn(0, 0, 1, 1)), nothing;
    const Rgn square(CreateRectRgn(0, 0, 10, 10)), hole(CreateRectRgn(3, 3, 6, 6));
    RECT box = {};
    CHECK(region.CombineRgn(square, hole, RGN_DIFF) == COMPLEXREGION);
    CHECK((region.PtInRegion(2, 3) && !region.PtInRegion(POINT{3, 3}) && !region.RectInRegion({3, 3, 6, 6})));
    CHECK((region.OffsetRgn(1, 2) == COMPLEXREGION && region.OffsetRgn(POINT{1, 0}) == COMPLEXREGION));
    CHECK((region.GetRgnBox(box) == COMPLEXREGION && Text(box) == "2 2 12 12"));
    const std::vector<char> expected = DataOf(region);
    std::vector<char> data(expected.size());
    const auto size = static_cast<unsigned int>(data.size());
    auto& header = reinterpret_cast<RGNDATA&>(*data.data());
    CHECK((region.GetRegionData(header, size - 1) == 0 && region.GetRegionData(header, size) == int(size)));
    CHECK(data == expected);
    CHECK((region.Copy(square) == SIMPLEREGION && region.EqualRgn(square) && !region.EqualRgn(hole)));
    region.SetRectRgn(3, 3, 6, 6);
    CHECK(region.EqualRgn(hole));
    region.SetRectRgn({0, 0, 10, 10});
    CHECK(region.EqualRgn(square));
    CHECK((nothing.Copy(square) == ERROR && nothing.GetRgnBox(box) == ERROR && !nothing.EqualRgn(square)));
}
