#include "tests/soak/Processes.h"

#include <doctest/doctest.h>
#include <kelcore/gdi.h>
#include <kelcore/platform/testing.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <list>
#include <random>
#include <set>
#include <variant>

namespace {

using Owner = std::variant<Brush, Pen, Font, SysBrush, SysPen>;
using Random = std::mt19937;

HGDIOBJ HandleOf(const Owner& owner) {
    struct Handle {
        HGDIOBJ operator()(const Brush& brush) const { return brush.m_hBrush; }
        HGDIOBJ operator()(const Pen& pen) const { return pen.m_hPen; }
        HGDIOBJ operator()(const Font& font) const { return font.m_hFont; }
    };
    return std::visit(Handle(), owner);
}

Owner Make(Random& random) {
    const int number = static_cast<int>(random() % 200);
    switch (random() % 5) {
    case 0:
        return Brush(static_cast<unsigned long>(number));
    case 1:
        return Pen(number % 6, number / 6, 0xFFUL); // null pens among them
    case 2:
        return Font(LOGFONTA{number + 1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, "Arial"});
    case 3:
        return SysBrush(number % 30);
    default:
        return SysPen(number % 5, number % 3, number % 30);
    }
}

void ChangeColour(Random& random) {
    const int index = static_cast<int>(random() % 30);
    const COLORREF colour = random() % 40;
    SetSysColors(1, &index, &colour);
    BroadcastSysColorChange();
}

std::size_t Distinct(const std::list<Owner>& owners) {
    std::set<HGDIOBJ> handles = {GetStockObject(NULL_PEN)};
    for (const Owner& owner : owners)
        handles.insert(HandleOf(owner));
    return handles.size() - 1;
}

} // namespace

TEST_CASE("drawing objects are created, copied, recoloured and destroyed: there are never more than in use") {
    constexpr unsigned kSeed = 7;
    const int steps = kel::soak::Effort().Of(/*most*/ 100000, /*eachSecond*/ 40000);
    const std::size_t before = kel::platform::GdiObjects();
    Random random(kSeed);
    std::list<Owner> owners;
    std::size_t most = 0;
    int colours = 0, faults = 0;
    for (int step = 0; step != steps; ++step) {
        const auto one = std::next(owners.begin(), owners.empty() ? 0 : static_cast<int>(random() % owners.size()));
        const unsigned action = random() % 100;
        if (owners.empty() || (action < 35 && owners.size() < 400)) {
            owners.push_back(Make(random));
        } else if (action < 60 && owners.size() < 400) {
            owners.push_back(*one);
        } else if (action < 62) {
            ChangeColour(random);
            ++colours;
        } else {
            owners.erase(one);
        }
        if (step % 50 == 0 || action < 62) {
            const std::size_t alive = kel::platform::GdiObjects() - before;
            most = std::max(most, alive);
            faults += alive != Distinct(owners);
        }
    }
    owners.clear();
    CHECK(faults == 0);
    CHECK(kel::platform::GdiObjects() == before);
    CHECK((colours > 0 && most > 0));
    std::printf("seed %u: %d steps, %d changes of colours, at most %zu objects at once, %d faults, %zu objects left\n",
                kSeed, steps, colours, most, faults, kel::platform::GdiObjects() - before);
}
